// The self-weight program on a project: the file it writes, the dynamic analysis that reads it
// back, the strength the hyperbolic model takes from it, and the faults it refuses.
#include <gmock/gmock.h>

#include <boost/make_shared.hpp>
#include <cmath>
#include <cstdio>
#include <map>
#include <sstream>

#include "input/model_readers.hpp"
#include "model/self_weight_stress.hpp"
#include "selfweight/gravity_method.hpp"
#include "selfweight/initial_stress_file.hpp"
#include "selfweight/k0_method.hpp"
#include "static_section.hpp"
#include "support/project_fixture.hpp"

namespace {

using ::testing::HasSubstr;

// A section 2 m wide and 3 m deep of 4-node elements 1 m square, two a row: the top row of a
// hyperbolic sand (material 1), the rest an elastic gravel (material 2). Base fixed, sides held
// vertically, as a column of the dynamic analysis is. Files named in `replace` take the text
// given instead.
void WriteColumnProject(const ProjectFolder& p, const std::map<std::string, std::string>& replace) {
    std::map<std::string, std::string> files;
    files["Flag_VARNEK.inp"] = "20200101 500 1 1\n";
    files["input_VARNEK.inp"] = "c.dat\nwave.csv\nnodes.dat\nelements.dat\nmat.dat\nbc.dat\n";
    files["c.dat"] = "10\n0\n0.01\n0.05\n0.65\n3\n2\n";
    std::ostringstream wave, nodes, elements, boundary;
    wave << "w,0.01,1\n";
    for (int k = 0; k <= 20; ++k) wave << k * 0.01 << "," << (k % 5) * 10.0 - 20.0 << "\n";
    files["wave.csv"] = wave.str();
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 3; ++column) nodes << column << " " << row - 3 << "\n";
    files["nodes.dat"] = nodes.str();
    for (int row = 0; row < 3; ++row)
        for (int c = 0; c < 2; ++c) {
            const int n = 3 * row + c;
            elements << (row == 2 ? 0 : 1) << " 4 1 " << n << " " << n + 1 << " " << n + 4 << " "
                     << n + 3 << "\n";
        }
    files["elements.dat"] = elements.str();
    files["mat.dat"] =
        "2\n4\n0.0018\n0.0018\n0\n40.5\n0.4\n0.02\n35\n0.01\n1\n1\n1\n1\n1\n1\n1\n0.22\n1\n"
        "5\n0.0020\n0.0020\n0\n180\n0.35\n0.02\n";
    for (int node = 0; node < 12; ++node)
        if (node < 3 || node % 3 != 1) boundary << node << " " << (node < 3 ? 2 : 1) << " 0 0\n";
    files["bc.dat"] = boundary.str();
    for (const auto& [name, text] : replace) files[name] = text;
    for (const auto& [name, text] : files) p.Write(name, text);
}

ProgramRun RunSelfWeight(const ProjectFolder& p, const std::string& arguments = "") {
    std::vector<std::string> words;
    std::istringstream in(arguments);
    for (std::string word; in >> word;) words.push_back(word);
    return p.RunExecutable(VARNEK_SELFWEIGHT_EXECUTABLE, words);
}

std::string Block(const std::string& text, const std::string& banner) {
    const size_t start = text.find(banner);
    if (start == std::string::npos) return "";
    const size_t end = text.find("----", start + banner.size());
    return text.substr(start + banner.size(), end - start - banner.size());
}

std::string Printf(const char* format, double a, double b, double c) {
    char text[200];
    std::snprintf(text, sizeof text, format, a, b, c);
    return text;
}

TEST(SelfWeightProgram, K0FileIsACompleteModelThatTheDynamicAnalysisRuns) {
    ProjectFolder p;
    WriteColumnProject(p, {});
    const ProgramRun run = RunSelfWeight(p, "--method k0");
    ASSERT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_FALSE(p.Exists("output0.inp.partial"));
    const std::string file = p.Read("output0.inp");
    EXPECT_TRUE(
        file.starts_with(" a--- ne np npar ----\n004\n6 12 1\n"
                         "---- nstep0 nstep ite_limit tol ----\n0 21 3 5.000000e-02\n"));
    EXPECT_EQ(CountLines(Block(file, "---- stress ----\n")), 24u);
    EXPECT_EQ(CountLines(Block(file, "---- strain ----\n")), 24u);
    EXPECT_TRUE(file.ends_with("---- pvsn & eq_epn ----\n0\n"));
    // Element 5 (top row, sand, K0 = 2/3), point 1 at the depth 0.5 + 0.5/sqrt(3): the weight
    // of 1.8 t/m3 of sand above it in tf/m2.
    const double vertical =
        -1.8e-3 * kStandardGravity * (0.5 + 0.5 / std::sqrt(3.0)) / 9.80665 * 1000.0;
    EXPECT_THAT(Block(file, "---- stress ----\n"),
                HasSubstr("\n5 " + Printf("%.4f %.4f %.4f 0.0000 ", vertical * 2 / 3, vertical,
                                          vertical * 2 / 3)));

    const ProgramRun dynamic = p.Run();
    EXPECT_EQ(dynamic.status, 0) << dynamic.out << dynamic.err;
    EXPECT_TRUE(p.Exists("a_end.dat"));
    EXPECT_THAT(dynamic.out, ::testing::Not(HasSubstr("Reading error")));
}

TEST(SelfWeightProgram, GravityIsTheDefaultAndVerboseShowsTheBalance) {
    ProjectFolder p;
    WriteColumnProject(p, {});
    const ProgramRun run = RunSelfWeight(p, "--verbose");
    ASSERT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_THAT(run.out, HasSubstr("sum of support reactions"));
    EXPECT_THAT(run.out, HasSubstr("gravity method: 24 integration points"));
    EXPECT_EQ(CountLines(Block(p.Read("output0.inp"), "---- stress ----\n")), 24u);
    EXPECT_EQ(p.Run().status, 0);

    const ProgramRun help = RunSelfWeight(p, "--help");
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, HasSubstr("--method gravity|k0"));
}

// Every fault: status 2, one message naming it, and no file, whole or in part.
TEST(SelfWeightProgram, FaultsStopWithAMessageAndWriteNothing) {
    struct Fault {
        std::string arguments;
        std::map<std::string, std::string> replace;
        std::string message;
    };
    const std::string sand =
        "4\n0.0018\n0.0018\n0\n40.5\n0.4\n0.02\n35\n0.01\n1\n1\n1\n1\n1\n1\n1\n0.22\n1\n";
    const Fault faults[] = {
        {"--method", {}, "--method needs a name"},
        {"--method fem", {}, "unknown method \"fem\""},
        {"--quiet", {}, "unknown argument \"--quiet\""},
        {"", {{"bc.dat", "// none\n"}}, "the mesh has no support in x or in y"},
        {"", {{"bc.dat", "0 1 0 0\n1 1 0 0\n2 1 0 0\n"}}, "the mesh has no support in x"},
        {"", {{"bc.dat", "0 2 0 0\n"}}, "the static system is singular"},
        {"--method k0",
         {{"elements.dat", "1 4 1 0 1 4 3\n1 4 1 1 4 5 2\n"}},
         "element 2: the Jacobian is not positive"},
        {"",
         {{"mat.dat", "2\n" + sand + "5\n0\n0.0020\n0\n180\n0.35\n0.02\n"}},
         "material 2: its first density is 0"},
        {"",
         {{"mat.dat", "2\n" + sand + "5\n0.002\n0.0020\n0\n-40\n0.35\n0.02\n"}},
         "material 2: its shear modulus G0 is -40"},
        {"--method k0",
         {{"mat.dat", "2\n" + sand + "5\n0.002\n0.0020\n0\n180\n0.5\n0.02\n"}},
         "material 2: its Poisson's ratio is 0.5"},
    };
    for (const Fault& fault : faults) {
        SCOPED_TRACE(fault.message);
        ProjectFolder p;
        WriteColumnProject(p, fault.replace);
        const ProgramRun run = RunSelfWeight(p, fault.arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.err, HasSubstr(fault.message));
        EXPECT_FALSE(p.Exists("output0.inp"));
        EXPECT_FALSE(p.Exists("output0.inp.partial"));
    }
}

// The file read back by the dynamic analysis' reader: every point's stress within the rounding
// of four decimals in tf/m2, and the hyperbolic sand's strength from its last point's state.
TEST(SelfWeightFile, ReadBackGivesThePointStressesAndTheHyperbolicStrength) {
    const SectionGrid grid{8, 2, 4, 4.0, 8.0, false};
    CAnalysisData analysis;
    BuildStaticSection(grid, {{8.0, 40.0, 0.35, 1.8e-3}}, analysis);
    auto sand = boost::make_shared<DAT_GHEmodel>();
    static_cast<DAT_Material&>(*sand) = *analysis.materials[0];
    sand->type = MaterialModel::kHyperbolic;
    sand->phi = 30.0 / 180.0 * 3.141592653589793;
    sand->c = 0.005;
    sand->strengthDivisor = 1.0;
    analysis.materials[0] = sand;
    for (CElement& element : analysis.elements) element.material = sand;

    for (bool gravity : {true, false}) {
        SCOPED_TRACE(gravity ? "gravity" : "k0");
        const SelfWeightState state =
            gravity ? GravityAnalysis(analysis) : GeostaticAnalysis(analysis);
        ProjectFolder p;
        WriteInitialStressFile(analysis, state, p.Path("output0.inp"));
        CAnalysisData readBack;
        readBack.elements = analysis.elements;
        ReadSelfWeightStress(readBack, p.Path("output0.inp"));

        const double rounding = 0.5e-4 * 9.80665 / 1000.0 * (1 + 1e-9);
        for (size_t e = 0; e < state.points.size(); ++e)
            for (size_t g = 0; g < state.points[e].size(); ++g)
                for (int i = 0; i < 4; ++i)
                    ASSERT_NEAR(readBack.elements[e].gaussPoints[g].stress[i],
                                state.points[e][g].stress[i], rounding);
        const Vector4& last = state.points.back().back().stress;
        EXPECT_NEAR(sand->tauf, GheStrength(*sand, last[0], last[1], last[3]), 1e-4 * sand->tauf);
        EXPECT_GT(sand->tauf, sand->c);
    }
}

}  // namespace

// Whole runs of a small project broken one fault at a time: each stops with its message at the
// place of the fault and its status, before anything is written (no "a_end.dat", no "dyn/" or
// "output/", no work file).
#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "support/mixed_project.hpp"
#include "support/project_fixture.hpp"

namespace {

using ::testing::HasSubstr;

// The text with its line n (from 1) replaced.
std::string WithLine(const std::string& text, int n, const std::string& line) {
    size_t start = 0;
    for (int i = 1; i < n; ++i) start = text.find('\n', start) + 1;
    const size_t end = text.find('\n', start);
    return text.substr(0, start) + line + text.substr(end);
}

// The text without its last line.
std::string WithoutLastLine(const std::string& text) {
    return text.substr(0, text.rfind('\n', text.size() - 2) + 1);
}

struct FaultCase {
    const char* what;
    std::function<void(ProjectFiles&)> change;
    int status;
    // Each line the run must print, in order; a stop with status 2 prints these alone unless
    // lines says otherwise.
    std::vector<std::string> messages;
    size_t lines = 0;
};

void ExpectNothingWritten(const ProjectFolder& p) {
    EXPECT_FALSE(p.Exists("a_end.dat"));
    EXPECT_FALSE(p.Exists("dyn"));
    EXPECT_FALSE(p.Exists("output"));
    for (const auto& entry : std::filesystem::directory_iterator(p.Root()))
        EXPECT_NE(entry.path().filename().string().rfind("work_", 0), 0u) << entry.path();
}

void RunCases(const std::vector<FaultCase>& cases) {
    for (const FaultCase& c : cases) {
        SCOPED_TRACE(c.what);
        ProjectFolder project;
        ProjectFiles files = MixedProjectFiles(false);
        c.change(files);
        WriteProject(project, files);
        const ProgramRun run = project.Run();
        EXPECT_EQ(run.status, c.status) << run.out << run.err;
        const std::string& shown = c.status == 2 ? run.err : run.out;
        size_t at = 0;
        for (const std::string& message : c.messages) {
            const size_t found = shown.find(message, at);
            EXPECT_NE(found, std::string::npos) << "missing: " << message << "\nin:\n" << shown;
            if (found != std::string::npos) at = found + message.size();
        }
        if (c.status == 2) {
            EXPECT_EQ(CountLines(run.err), c.lines > 0 ? c.lines : c.messages.size()) << run.err;
        }
        ExpectNothingWritten(project);
    }
}

// Changes line n of a file.
std::function<void(ProjectFiles&)> Line(const std::string& file, int n, const std::string& text) {
    return [=](ProjectFiles& f) { f[file] = WithLine(f[file], n, text); };
}

TEST(ModelFaults, NumbersThatAreNotFiniteAreShownAtTheirLine) {
    RunCases({
        {"cut-off", Line("c.dat", 1, "nan"), 2, {"c.dat:1: the cut-off frequency is nan"}},
        {"iteration limit", Line("c.dat", 6, "nan"), 2, {"c.dat:6: the iteration limit is nan"}},
        {"infinite time step",
         Line("c.dat", 3, "inf"),
         2,
         {"c.dat:3: the time step inf s is not a positive finite number"}},
        {"amplitude factor",
         Line("wave.csv", 1, "w,0.01,nan"),
         2,
         {"wave.csv:1: the amplitude factor of the header is nan, not a finite number"}},
        {"wave samples",
         [](ProjectFiles& f) {
             f["wave.csv"] = WithLine(WithLine(f["wave.csv"], 4, "0.02,inf"), 9, "nan,0");
         },
         2,
         {"wave.csv:4: the sample at 0.02 s of inf gal is not finite",
          "wave.csv:9: the sample at nan s of 0 gal is not finite"}},
        {"overflow of the factor",
         Line("wave.csv", 1, "w,0.01,1e307"),
         2,
         {"wave.csv:1: the samples times the amplitude factor 1e+307 overflow"}},
        {"node",
         Line("nodes.dat", 2, "nan 0"),
         2,
         {"nodes.dat:2: node 2: the coordinates (nan, 0) are not finite"}},
        {"dashpot",
         [](ProjectFiles& f) { f["bc.dat"] += "$VISCO 101 3 0 nan 0 0 5 10 5 0 1 -1\n"; },
         2,
         {"bc.dat:5: the dashpot of node 4: its coefficient or factors are not finite"}},
        {"self-weight stress",
         Line("output0.inp", 5, "4 -1 nan -1 0.1 0 0"),
         2,
         {"output0.inp:5: the stresses of element 1, integration point 4, are not finite"}},
    });
}

TEST(ModelFaults, ModelsThatWouldSolveNothing) {
    RunCases({
        {"cut-off 0",
         Line("c.dat", 1, "0"),
         2,
         {"c.dat:1: the cut-off frequency 0 Hz must be positive"}},
        {"cut-off below the first line",
         Line("c.dat", 1, "1"),
         2,
         {"c.dat:1: the cut-off frequency 1 Hz lies below the lowest frequency line, 3.125 Hz "
          "for the record of 32 samples: no line would be solved"}},
        {"negative time step",
         Line("c.dat", 3, "-0.01"),
         2,
         {"c.dat:3: the time step -0.01 s is not a positive finite number"}},
        {"wave without samples",
         [](ProjectFiles& f) { f["wave.csv"] = "w,0.01,1\n"; },
         2,
         {"wave.csv:1: the wave gives 0 samples, at least 2 are needed"}},
        {"list of the constants alone",
         [](ProjectFiles& f) { f["input_VARNEK.inp"] = "c.dat\n"; },
         2,
         {"the model has no wave: the file list names no wave file",
          "the model has no element: the file list names no element file"}},
        {"no element",
         [](ProjectFiles& f) { f["elements.dat"] = "// none\n"; },
         2,
         {"elements.dat: the file gives no element"}},
    });
}

// A record longer than the machine's memory can hold with the mesh stops before it is
// allocated: the samples on their own beyond 2^30, or the spectra of many nodes.
TEST(ModelFaults, RecordLengthIsBoundedByTheMachine) {
    RunCases({
        {"beyond 2^30 samples",
         [](ProjectFiles& f) {
             f["c.dat"] = WithLine(f["c.dat"], 3, "1e-9");
             f["wave.csv"] = "w,0.01,1\n0,0\n2,0\n";
         },
         2,
         {"wave.csv:3: time step 1e-09 and last sample time 2 give no wave"}},
        {"spectra of 300000 nodes",
         [](ProjectFiles& f) {
             f["c.dat"] = WithLine(f["c.dat"], 3, "1e-6");
             f["wave.csv"] = "w,0.01,1\n0,0\n0.5,0\n";
             std::string nodes;
             for (int i = 0; i < 300000; ++i) nodes += "0 0\n";
             f["nodes.dat"] = nodes;
         },
         2,
         {"nodes.dat:", ": the response spectra of more than ",
          " nodes on a wave of 524288 samples need more than the "},
         1},
    });
}

TEST(ModelFaults, MaterialValuesOutsideTheirRange) {
    // Material 1 (elastic) stands on lines 2 to 8; material 2 (table) on lines 9 to 25, its
    // strains on 17 to 19, G/G0 on 20 to 22 and damping in percent on 23 to 25.
    const std::string ghe =
        "2\n4\n0.0019\n0.0019\n0\n80\n0.3\n0.03\n30\n0.01\n1\n1\n1\n1\n1\n1\n1\n0.2\n1\n"
        "2\n0.0017\n0.0017\n0\n30\n0.4\n0.02\n3\n1e-6\n1e-4\n1e-2\n1\n0.8\n0.2\n2\n5\n15\n";
    auto withGhe = [ghe](int line, const std::string& text) {
        return [=](ProjectFiles& f) { f["mat.dat"] = WithLine(ghe, line, text); };
    };
    RunCases({
        {"zero modulus",
         Line("mat.dat", 6, "0"),
         2,
         {"mat.dat:6: material 1: the initial shear modulus G0 0 must be positive"}},
        {"zero density",
         Line("mat.dat", 3, "0"),
         2,
         {"mat.dat:3: material 1: the first density 0 must be positive"}},
        {"negative second density",
         Line("mat.dat", 11, "-0.0017"),
         2,
         {"mat.dat:11: material 2: the second density -0.0017 must be positive"}},
        {"Poisson's ratio 0.5",
         Line("mat.dat", 7, "0.5"),
         2,
         {"mat.dat:7: material 1: Poisson's ratio 0.5 must lie above -1 and below 0.5"}},
        {"negative damping",
         Line("mat.dat", 8, "-0.01"),
         2,
         {"mat.dat:8: material 1: the damping ratio -0.01 must be at least 0 and below 1"}},
        {"damping in percent",
         Line("mat.dat", 15, "2"),
         2,
         {"mat.dat:15: material 2: the damping ratio 2 must be at least 0 and below 1"}},
        {"strains not increasing",
         Line("mat.dat", 19, "1e-4"),
         2,
         {"mat.dat:19: material 2: the strains must increase from row to row: row 3 gives "
          "0.0001 after 0.0001"}},
        {"zero strain",
         Line("mat.dat", 17, "0"),
         2,
         {"mat.dat:17: material 2: the strain of row 1, 0, must be positive"}},
        {"G/G0 above 1",
         Line("mat.dat", 21, "1.2"),
         2,
         {"mat.dat:21: material 2: G/G0 of row 2, 1.2, must lie above 0 and not above 1"}},
        {"negative table damping",
         Line("mat.dat", 23, "-2"),
         2,
         {"mat.dat:23: material 2: the damping of row 1, -2 %, must be at least 0 and below 100 "
          "%"}},
        {"strength divisor 0",
         withGhe(19, "0"),
         2,
         {"mat.dat:19: material 1: the strength divisor is 0"}},
        {"no strength",
         [=](ProjectFiles& f) { f["mat.dat"] = WithLine(WithLine(ghe, 9, "0"), 10, "0"); },
         2,
         {"mat.dat:10: material 1: cohesion and friction angle are both 0: the soil has no "
          "strength"}},
        {"maximum damping of 1",
         withGhe(18, "1"),
         2,
         {"mat.dat:18: material 1: the maximum damping ratio 1 must be at least 0 and below 1"}},
        // A sound record whose strength under the self-weight stresses is negative.
        {"negative cohesion",
         withGhe(10, "-1"),
         2,
         {"output0.inp:5: element 1: the shear strength of material 1 under these stresses is "
          "-0.99"}},
    });
}

TEST(ModelFaults, ElementShapesAndOrientation) {
    RunCases({
        {"repeated node",
         Line("elements.dat", 1, "0 4 1 0 1 1 3"),
         2,
         {"elements.dat:1: element 1: node 2 appears twice among its nodes"}},
        {"two nodes at one point",
         Line("nodes.dat", 4, "1 1"),
         2,
         {"elements.dat:1: element 1: its nodes 3 and 4 lie at the same point (1, 1)"}},
        {"three corners on a line",
         Line("elements.dat", 1, "0 4 1 0 1 6 3"),
         2,
         {"elements.dat:1: element 1: its corner nodes 1, 2 and 7 lie on one line"}},
        {"flat triangle",
         [](ProjectFiles& f) {
             f["nodes.dat"] = WithLine(WithLine(f["nodes.dat"], 11, "1.2 1"), 12, "1.1 1");
             f["nodes.dat"] = WithLine(f["nodes.dat"], 13, "1.6 1");
         },
         2,
         {"elements.dat:3: element 3: it has no area: its corners lie on one line or its "
          "sides cross"}},
        {"bow-tie",
         Line("elements.dat", 1, "0 4 1 0 6 3 2"),
         2,
         {"elements.dat:1: element 1: it is crossed or re-entrant at its corner node 4: the "
          "Jacobian changes sign within it"}},
        {"mid-side node out of place",
         Line("nodes.dat", 8, "0.9 0.5"),
         2,
         {"elements.dat:2: element 2: the Jacobian changes sign or vanishes at its integration "
          "point"}},
        {"one element clockwise",
         Line("elements.dat", 1, "0 4 1 0 3 2 1"),
         2,
         {"elements.dat:1: element 1: its nodes run clockwise, those of the rest of the mesh "
          "counter-clockwise"}},
        {"two elements clockwise",
         [](ProjectFiles& f) {
             f["elements.dat"] = "0 4 1 0 3 2 1\n1 8 1 1 2 5 4 9 8 7 6\n1 6 1 5 10 2 11 8 12\n";
         },
         2,
         {"elements.dat:3: element 3: its nodes run counter-clockwise, those of the rest of the "
          "mesh clockwise"}},
    });
}

TEST(ModelFaults, SelfWeightFileWithoutALineForEveryPoint) {
    const std::string expected = " expected, one for each integration point of the mesh";
    RunCases({
        {"last line missing",
         [](ProjectFiles& f) { f["output0.inp"] = WithoutLastLine(f["output0.inp"]); },
         2,
         {"output0.inp:20: the stress block has 19 lines, 20" + expected}},
        {"next block after ten lines",
         [](ProjectFiles& f) {
             std::string text = f["output0.inp"];
             f["output0.inp"] = WithLine(text, 12, "---- strain ----");
         },
         2,
         {"output0.inp:11: the stress block has 10 lines, 20" + expected}},
        {"no marker",
         Line("output0.inp", 1, "---- stress ---- "),
         2,
         {"output0.inp:21: no line \"---- stress ----\": 0 stress lines, 20" + expected}},
        {"empty file",
         [](ProjectFiles& f) { f["output0.inp"] = ""; },
         2,
         {"output0.inp:0: no line \"---- stress ----\": 0 stress lines, 20" + expected}},
    });
}

TEST(ModelFaults, AllFaultsAreShownUpToTwentyLines) {
    RunCases({{"23 faults",
               [](ProjectFiles& f) {
                   std::string wave = "w,0.01,1\n";
                   for (int k = 0; k <= 20; ++k) wave += std::to_string(k * 0.01) + ",nan\n";
                   f["wave.csv"] = wave;
                   f["nodes.dat"] = WithLine(WithLine(f["nodes.dat"], 1, "inf 0"), 13, "0 nan");
               },
               2,
               {"wave.csv:2: the sample at 0 s of nan gal", "wave.csv:21: the sample at 0.19",
                "and 3 more faults"},
               21}});
}

// The stops that the input contract gives their own message and status keep them, and leave
// nothing behind either.
TEST(ModelFaults, ContractStopsKeepTheirMessageAndStatus) {
    RunCases({
        {"no self-weight file",
         [](ProjectFiles& f) { f.erase("output0.inp"); },
         0,
         {"自重解析:Reading error\n"}},
        {"unknown boundary code",
         [](ProjectFiles& f) { f["bc.dat"] += "3 7 0 0\n"; },
         0,
         {"DispBoundary ERROR\n"}},
    });
}

// A material that no element uses does not enter the analysis and is not examined.
TEST(ModelFaults, UnusedMaterialIsNotExamined) {
    ProjectFolder project;
    ProjectFiles files = MixedProjectFiles(true);
    files["mat.dat"] = "3\n" + files["mat.dat"].substr(2) + "5\n0\n0\n0\n0\n0.5\n-1\n";
    WriteProject(project, files);
    const ProgramRun run = project.Run();
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(project.Exists("a_end.dat"));
}

// An all-clockwise mesh is as good as an all-counter-clockwise one.
TEST(ModelFaults, AllClockwiseMeshGivesTheSameMotion) {
    ProjectFolder counter, clockwise;
    ProjectFiles files = MixedProjectFiles(true);
    WriteProject(counter, files);
    files["elements.dat"] = "0 4 1 0 3 2 1\n1 8 1 1 2 5 4 9 8 7 6\n1 6 1 5 2 10 11 12 8\n";
    WriteProject(clockwise, files);
    for (const ProjectFolder* p : {&counter, &clockwise}) {
        const ProgramRun run = p->Run();
        ASSERT_EQ(run.status, 0) << run.err;
        EXPECT_TRUE(p->Exists("a_end.dat"));
    }
    for (const char* file : {"dyn/acc3.dat", "dyn/acc11.dat", "dyn/femsig2.dat"})
        EXPECT_EQ(counter.Read(file), clockwise.Read(file)) << file;
}

}  // namespace

#include "support/reader_test_support.hpp"

namespace {

using FileList = ReaderTest;

TEST_F(FileList, ConstantsMayCarryLabelsAndTextLinesTakeNoPlace) {
    ReadConstants(analysis, File("c.txt",
                                 "// analysis constants\r\n12.5 cut-off [Hz]\r\ntext line\r\n0\r\n"
                                 "0.01\tdt\r\n0.02 tol\r\n0.65 ratio\r\n8.9 iterations\r\n"
                                 "-1.7 side\r\n99 ignored\r\n"));
    EXPECT_EQ((std::vector<double>{analysis.cutoffFrequency, analysis.timeStep, analysis.tolerance,
                                   analysis.effectiveStrainRatio}),
              (std::vector<double>{12.5, 0.01, 0.02, 0.65}));
    // Counts and codes are truncated toward zero.
    EXPECT_EQ(std::tie(analysis.iterationLimit, analysis.sideBoundaryType), std::make_tuple(8, -1));
}

TEST_F(FileList, CommentLineInTheListTakesNoSlot) {
    File("config_VARNEK.txt", project.Root().string() + "/\n");
    File("input_VARNEK.inp", "// model of the test\nconstants.dat\nwave.dat\n");
    File("constants.dat", "10\n0\n0.01\n0.02\n0.65\n5\n2\n");
    // Were the comment a slot, the constants reader would fail on it; the wave file is missing.
    const ProgramRun run = project.Run();
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, project.Root().string() + "/\nSesmicData:Reading error\n");
}

using FileListDeathTest = ReaderTest;

// A file that cannot be opened: the reader's own message on standard output and status 0.
TEST_F(FileListDeathTest, EachReaderStopsWithItsMessage) {
    const std::string list = File("input_VARNEK.inp", "// takes no slot\n\nwave.dat\n");
    const std::string folder = project.Root().string() + "/";
    const std::string constants = File("c.txt", "1\n2\n3\n");
    CAnalysisData& a = analysis;
    const std::tuple<std::function<void()>, int, const char*> cases[] = {
        {[&] { ReadFileList(a, "no/input_VARNEK.inp", "no/"); }, 0,
         "^Filelist:Reading error\nno/input_VARNEK.inp\nno/\n$"},
        // An empty list line takes a slot: the constants file is the folder itself.
        {[&] { ReadFileList(a, list, folder); }, 0, "^dConstantData:Reading error\n$"},
        {[&] { ReadSeismic(a, "no/wave.dat"); }, 0, "^SesmicData:Reading error\n$"},
        {[&] { ReadNodes(a, "no/nodes.dat"); }, 0, "^NodeData:Reading error\n$"},
        {[&] { ReadElements(a, "no/e.dat", ""); }, 0, "^ElemData:Reading error\n$"},
        {[&] { ReadElements(a, "", "no/m.dat"); }, 0, "^dConstantData:Reading error\n$"},
        {[&] { ReadBoundary(a, a.boundaryConds, "no/bc.dat"); }, 0, "^BCDispData:Reading error\n$"},
        {[&] { ReadSelfWeightStress(a, ""); }, 0, "^自重解析:Reading error\n$"},
        {[&] { ReadConstants(a, constants); }, 2, "c.txt:3: .*7 values"},
    };
    for (const auto& [read, status, message] : cases) ExpectStop(read, status, message);
}

}  // namespace

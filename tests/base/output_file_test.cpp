#include "base/output_file.hpp"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cerrno>
#include <functional>
#include <thread>

#include "base/run_stop.hpp"
#include "support/project_fixture.hpp"

namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

TEST(OutputFile, FailuresStopTheRunWithTheFileAndTheSystemsReason) {
    const ProjectFolder folder;
    folder.Write("plain", "");
    folder.Write("folder/keep", "");
    struct Failure {
        const char* name;
        std::function<void()> write;
        std::string message;
    };
    const Failure failures[] = {
        {"a full device, met at the flush of the close",
         [] {
             OutputFile file("/dev/full", "w");
             file.Write("x", 1);
             file.Close();
         },
         "^Error: cannot write file\\(/dev/full\\): No space left on device\n$"},
        {"a full device, met at an unbuffered write",
         [] { OutputFile("/dev/full", "wb", OutputFile::Buffering::kNone).Write("x", 1); },
         "^Error: cannot write file\\(/dev/full\\): No space left on device\n$"},
        {"a file where a folder should be",
         [&] { OutputFile(folder.Path("plain/x"), "w"); },
         "^Error: cannot create file\\(" + folder.Path("plain/x") + "\\): Not a directory\n$"},
        {"a folder where the file should be", [&] { OutputFile(folder.Path("folder"), "w"); },
         "^Error: cannot create file\\(" + folder.Path("folder") + "\\): Is a directory\n$"},
    };
    for (const Failure& failure : failures) {
        SCOPED_TRACE(failure.name);
        const Clock::time_point start = Clock::now();
        EXPECT_EXIT(failure.write(), ::testing::ExitedWithCode(1), failure.message);
        EXPECT_LT(SecondsSince(start), 2 * std::chrono::duration<double>(kOpenRetryWindow).count());
    }
}

TEST(OutputFile, AnOpenThatFailsIsTriedAgainUntilItsWindowCloses) {
    const ProjectFolder folder;
    folder.Write("held/keep", "");  // a folder holds the name for a while
    const std::string path = folder.Path("held");
    int error = 0;
    Clock::time_point start = Clock::now();
    EXPECT_EQ(OpenWithRetry(path, "w", std::chrono::milliseconds(300), error), nullptr);
    EXPECT_EQ(error, EISDIR);
    EXPECT_GE(SecondsSince(start), 0.3);
    EXPECT_LT(SecondsSince(start), 1.5);

    // Released within the window, the name opens.
    std::thread release([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        std::filesystem::remove_all(path);
    });
    start = Clock::now();
    std::FILE* file = OpenWithRetry(path, "w", std::chrono::seconds(5), error);
    release.join();
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    EXPECT_LT(SecondsSince(start), 2.0);
}

struct HandledStop {
    ExitStatus status;
};

TEST(RunStop, AStopRemovesTheRegisteredFilesAndEndsThroughItsHandler) {
    const ProjectFolder folder;
    folder.Write("work_a.dat", "a");
    folder.Write("kept.dat", "b");
    EXPECT_EXIT((RemoveOnStop(folder.Path("work_a.dat")), RemoveOnStop(folder.Path("never.dat")),
                 StopRun(ExitStatus::kOutputFailure)),
                ::testing::ExitedWithCode(1), "");
    EXPECT_FALSE(folder.Exists("work_a.dat"));
    EXPECT_TRUE(folder.Exists("kept.dat"));

    // A harness that keeps running: the stop comes back to it as an exception, after the message.
    SetStopHandler([](ExitStatus status) { throw HandledStop{status}; });
    ::testing::internal::CaptureStderr();
    try {
        StopOnBadInput("nodes.dat", 3, "a fault");
        ADD_FAILURE() << "the stop returned";
    } catch (const HandledStop& stop) {
        EXPECT_EQ(stop.status, ExitStatus::kBadInput);
    }
    SetStopHandler(nullptr);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "nodes.dat:3: a fault\n");
}

}  // namespace

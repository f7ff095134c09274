#include "base/ranks.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iostream>

#include "base/platform.hpp"

#ifdef VARNEK_WITH_MPI
#include <mpi.h>
#endif

namespace ranks {
namespace {

struct Job {
    bool inJob = false;
    int rank = 0;
    int count = 1;
    int onMachine = 1;
    bool preparing = false;  // in the shared preparation of a job of several ranks
    // The console of a silenced rank, kept for a stop to speak through.
    int savedOut = -1;
    int savedErr = -1;
};
Job gJob;

void FlushConsole() {
    std::cout.flush();
    std::cerr.flush();
    std::fflush(nullptr);
}

void Silence() {
    FlushConsole();
    const int nowhere = open("/dev/null", O_WRONLY);
    if (nowhere < 0) return;
    gJob.savedOut = dup(STDOUT_FILENO);
    gJob.savedErr = dup(STDERR_FILENO);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    close(nowhere);
}

void RestoreConsole() {
    if (gJob.savedOut < 0) return;
    FlushConsole();
    dup2(gJob.savedOut, STDOUT_FILENO);
    dup2(gJob.savedErr, STDERR_FILENO);
    close(gJob.savedOut);
    close(gJob.savedErr);
    gJob.savedOut = gJob.savedErr = -1;
}

#ifdef VARNEK_WITH_MPI
// The launchers of Open MPI, MPICH and SLURM leave these in the environment of every process.
bool StartedByLauncher() {
    for (const char* name : {"OMPI_COMM_WORLD_SIZE", "PMIX_RANK", "PMI_RANK", "PMI_SIZE"})
        if (std::getenv(name) != nullptr) return true;
    return false;
}

// Completes a request, polling it every millisecond.
void Await(MPI_Request& request) {
    int done = 0;
    MPI_Test(&request, &done, MPI_STATUS_IGNORE);
    while (!done) {
        const timespec pause{0, 1000000};
        nanosleep(&pause, nullptr);
        MPI_Test(&request, &done, MPI_STATUS_IGNORE);
    }
}

// Rank 0's word at the end of the shared preparation: it has come through.
void HearRankZeroGoOn() {
    int goOn = 1;
    MPI_Request request;
    MPI_Ibcast(&goOn, 1, MPI_INT, 0, MPI_COMM_WORLD, &request);
    Await(request);
}
#endif

}  // namespace

void Start(int* argc, char*** argv) {
#ifdef VARNEK_WITH_MPI
    if (!StartedByLauncher()) return;
    int provided = 0;
    // A stop may be met in a worker thread and end the job from there.
    MPI_Init_thread(argc, argv, MPI_THREAD_SERIALIZED, &provided);
    gJob.inJob = true;
    MPI_Comm_rank(MPI_COMM_WORLD, &gJob.rank);
    MPI_Comm_size(MPI_COMM_WORLD, &gJob.count);
    MPI_Comm machine;
    MPI_Comm_split_type(MPI_COMM_WORLD, MPI_COMM_TYPE_SHARED, 0, MPI_INFO_NULL, &machine);
    MPI_Comm_size(machine, &gJob.onMachine);
    MPI_Comm_free(&machine);
    gJob.preparing = gJob.count > 1;
    if (gJob.rank != 0) Silence();
#else
    (void)argc;
    (void)argv;
#endif
}

void Finish() {
#ifdef VARNEK_WITH_MPI
    if (!gJob.inJob) return;
    FlushConsole();
    WaitForAll();
    MPI_Finalize();
#endif
}

bool InJob() {
    return gJob.inJob;
}

int Rank() {
    return gJob.rank;
}

int Count() {
    return gJob.count;
}

bool Leads() {
    return gJob.rank == 0;
}

int CountOnMachine() {
    return gJob.onMachine;
}

int SolutionWorkers() {
    const int processors = ProcessorCount();
    // Ranks that may all run on every processor of the machine share them; ranks bound to
    // processors of their own use theirs.
    const bool shared = gJob.onMachine > 1 && processors >= LauncherProcessorCount();
    const int workers = (processors - 1) / (shared ? gJob.onMachine : 1);
    return std::max(workers, 1);
}

void EndSharedPreparation() {
    if (!gJob.preparing) return;
    gJob.preparing = false;
#ifdef VARNEK_WITH_MPI
    HearRankZeroGoOn();
#endif
}

void WaitForAll() {
#ifdef VARNEK_WITH_MPI
    if (gJob.count <= 1) return;
    MPI_Request request;
    MPI_Ibarrier(MPI_COMM_WORLD, &request);
    Await(request);
#endif
}

void SumOverRanks(std::vector<double>& values) {
#ifdef VARNEK_WITH_MPI
    if (gJob.count <= 1 || values.empty()) return;
    WaitForAll();
    MPI_Allreduce(MPI_IN_PLACE, values.data(), static_cast<int>(values.size()), MPI_DOUBLE,
                  MPI_SUM, MPI_COMM_WORLD);
#else
    (void)values;
#endif
}

void ShareBlocks(std::complex<double>* all, size_t blockLength, const std::vector<int>& counts,
                 bool toAll) {
#ifdef VARNEK_WITH_MPI
    if (gJob.count <= 1 || blockLength == 0) return;
    std::vector<int> first(counts.size(), 0);
    for (size_t r = 1; r < counts.size(); ++r) first[r] = first[r - 1] + counts[r - 1];
    MPI_Datatype block;
    MPI_Type_contiguous(static_cast<int>(2 * blockLength), MPI_DOUBLE, &block);
    MPI_Type_commit(&block);
    // Ranks finish their lines at different moments: the idle ones wait here asleep, so that the
    // transfer itself starts with every rank present.
    WaitForAll();
    if (toAll) {
        MPI_Allgatherv(MPI_IN_PLACE, 0, block, all, counts.data(), first.data(), block,
                       MPI_COMM_WORLD);
    } else if (gJob.rank == 0) {
        MPI_Gatherv(MPI_IN_PLACE, 0, block, all, counts.data(), first.data(), block, 0,
                    MPI_COMM_WORLD);
    } else {
        MPI_Gatherv(all + static_cast<size_t>(first[gJob.rank]) * blockLength, counts[gJob.rank],
                    block, nullptr, nullptr, nullptr, block, 0, MPI_COMM_WORLD);
    }
    MPI_Type_free(&block);
#else
    (void)all;
    (void)blockLength;
    (void)counts;
    (void)toAll;
#endif
}

void TakeConsoleForStop() {
#ifdef VARNEK_WITH_MPI
    if (gJob.preparing && gJob.rank != 0) {
        gJob.preparing = false;
        HearRankZeroGoOn();
    }
#endif
    RestoreConsole();
}

void EndRun(int status) {
    FlushConsole();
#ifdef VARNEK_WITH_MPI
    if (gJob.inJob) MPI_Abort(MPI_COMM_WORLD, status);
#endif
    _exit(status);
}

}  // namespace ranks

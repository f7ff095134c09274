// The ranks of an MPI job. A run started by an MPI launcher (mpirun, srun) is one process of
// several, each solving its share of the frequency lines; rank 0 leads: it alone writes files and
// speaks on the console. A process started without a launcher is a job of one rank and touches
// no MPI at all, so that it runs exactly as a program built without MPI.
//
// Collective operations must be called by every rank in the same order. A rank that waits for
// the others sleeps between polls instead of spinning, so that an idle rank leaves its processor
// to the ranks and threads that still work.
#pragma once

#include <complex>
#include <cstddef>
#include <vector>

namespace ranks {

// Joins the job when a launcher started this process; otherwise does nothing. On ranks other
// than 0 standard output and standard error are silenced from here on, until a stop speaks.
void Start(int* argc, char*** argv);

// Leaves the job once every rank has come here.
void Finish();

// Started by a launcher (a job of one rank included).
bool InJob();
int Rank();   // 0 outside a job
int Count();  // 1 outside a job
bool Leads();  // rank 0: the console, the files and the output stages
// Ranks of the job on this machine, this one included.
int CountOnMachine();

// Worker threads of this rank for the solution: the processors it may use but one, shared
// evenly with the other ranks of its machine when the launcher has not bound the ranks to
// processors of their own; never fewer than one.
int SolutionWorkers();

// Ends the shared preparation. Until then every rank reads the same files and builds the same
// model, so that a stop met by one rank is met by rank 0 as well, which alone reports it.
void EndSharedPreparation();

// Waits until every rank has come here.
void WaitForAll();

// Each entry summed over the ranks, on every rank.
void SumOverRanks(std::vector<double>& values);

// Blocks of blockLength complex values, counts[r] of them from rank r, laid out in all rank
// after rank; each rank has filled its own blocks. On return all blocks are there on every rank
// (toAll) or on rank 0 alone.
void ShareBlocks(std::complex<double>* all, size_t blockLength, const std::vector<int>& counts,
                 bool toAll);

// For the family of run stops: called before a stop reports. Outside the shared preparation, or
// on rank 0, it gives this rank its console back and returns. A rank other than 0 that stops
// during the shared preparation first waits for rank 0: if rank 0 stops as well, the job ends
// from there (with rank 0's report) and this never returns; if rank 0 goes on, the fault is this
// rank's alone and it reports it itself.
void TakeConsoleForStop();

// Ends the process, and in a job the whole job, with this exit status.
[[noreturn]] void EndRun(int status);

}  // namespace ranks

// The share of one rank of a job in the work of a pass: the frequency lines it solves and the
// elements whose strain histories it takes. Lines cost nearly the same (one pattern, one
// ordering, one factorisation each), so they are dealt out in turn: line i goes to rank
// (i - 1) mod R. Every rank gets as many lines as any other, one more at most, spread evenly over
// the band, and each round of R consecutive lines is taken up by the R ranks at about the same
// moment. Elements are dealt out in turn likewise. A process alone holds the whole of the work.
#pragma once

#include <cstddef>
#include <vector>

#include "model/analysis_data.hpp"

struct WorkShare {
    int part = 0;   // this rank
    int parts = 1;  // ranks of the job

    // The share of this process in its job.
    static WorkShare OfThisRank();

    bool OwnsLine(int line) const { return (line - 1) % parts == part; }
    bool OwnsElement(size_t element) const { return element % parts == static_cast<size_t>(part); }
    // Lines of part p from line 1 below lineCount, and the k-th of them (from 0).
    int LineCountOf(int p, int lineCount) const;
    int LineOf(int p, int k) const { return p + 1 + k * parts; }
    // This share's lines, ascending.
    std::vector<int> Lines(int lineCount) const;
};

// After a pass in which every rank solved its own lines: the solutions of all lines 1 below
// lineCount into the node spectra of every rank (everyRank) or of rank 0 alone. Only the free
// degrees of freedom travel; a fixed one is zero at every line. Does nothing for a share of one.
// The lines travel in rounds through a buffer that is kept from pass to pass: fresh pages cost
// more than the copies themselves.
class SolvedLineExchange {
  public:
    explicit SolvedLineExchange(const WorkShare& share) : share_(share) {}

    void Run(int lineCount, CAnalysisData& analysis, bool everyRank);

  private:
    WorkShare share_;
    std::vector<Complex> round_;
};

// The text files of the folder "output_ff/", in the layouts that the dynamic analysis reads.
#pragma once

#include <string>
#include <vector>

#include "freefield/column_analysis.hpp"
#include "freefield/side_column.hpp"
#include "freefield/side_matrices.hpp"

// One file per edge node, "<prefix><k>.dat" with k running from 0 down the column: the node's
// index on the first line, then "re im" of its motion at every line from 0. Returns the count.
int WriteColumnMotionFiles(const std::string& folder, const std::string& prefix,
                           const SideColumn& column, const ColumnResponse& response);

// Lines "row column re im" of a matrix over the section's degrees of freedom. Numbers are
// written as "%d" and "%.17g" write them, so that the doubles read back the same.
void WriteMatrixFile(const std::string& path, const std::vector<DofEntry>& entries);

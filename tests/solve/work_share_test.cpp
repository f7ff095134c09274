// The share of each rank: every line and every element goes to exactly one rank, and the shares
// of the lines differ by one line at most.
#include "solve/work_share.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

TEST(WorkShare, DealsEveryLineAndElementToExactlyOneRankEvenly) {
    for (const int parts : {1, 2, 3, 4, 7}) {
        for (const int lineCount : {0, 1, 2, 3, 8, 411}) {
            SCOPED_TRACE(std::to_string(parts) + " ranks, " + std::to_string(lineCount) + " lines");
            std::vector<int> owner(static_cast<size_t>(std::max(lineCount, 1)), -1);
            int fewest = lineCount, most = 0;
            for (int p = 0; p < parts; ++p) {
                const WorkShare share{p, parts};
                const std::vector<int> lines = share.Lines(lineCount);
                ASSERT_EQ(static_cast<int>(lines.size()), share.LineCountOf(p, lineCount));
                EXPECT_TRUE(std::is_sorted(lines.begin(), lines.end()));
                fewest = std::min(fewest, static_cast<int>(lines.size()));
                most = std::max(most, static_cast<int>(lines.size()));
                for (size_t k = 0; k < lines.size(); ++k) {
                    const int line = lines[k];
                    ASSERT_GE(line, 1);
                    ASSERT_LT(line, lineCount);
                    EXPECT_EQ(share.LineOf(p, static_cast<int>(k)), line);
                    EXPECT_TRUE(share.OwnsLine(line));
                    EXPECT_EQ(owner[line], -1) << "line " << line;
                    owner[line] = p;
                }
            }
            for (int line = 1; line < lineCount; ++line) EXPECT_NE(owner[line], -1) << line;
            if (lineCount > 1) {
                EXPECT_LE(most - fewest, 1);
            }
            for (size_t e = 0; e < 20; ++e) {
                int owners = 0;
                for (int p = 0; p < parts; ++p) owners += WorkShare{p, parts}.OwnsElement(e);
                EXPECT_EQ(owners, 1) << "element " << e;
            }
        }
    }
}

}  // namespace

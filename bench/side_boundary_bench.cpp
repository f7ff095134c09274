// Reading the frequency matrices of the energy-transmitting sides: time per frequency line for
// the line-by-line formatted scan into a row map (the plain way), for ReadFrequencyEMatrix, and
// for FrequencyEMatrixStore holding the parsed lines in memory or reading the files again, both
// as a matrix and as values over the union pattern.
//
// The model: a mesh of sideNodes rows and width columns of nodes, the bottom row fixed; each
// side column couples all its free degrees of freedom in one dense block per frequency line, as
// the free-field analysis writes them. The files go to a scratch folder that is removed at the
// end.
//
// Usage: side_boundary_bench [lineCount=200] [sideNodes=100] [folder=/tmp/varnek-side-bench/]
#include <omp.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "input/transmitting_boundary.hpp"

namespace {
constexpr int kWidth = 11;  // node columns of the mesh

CAnalysisData SideModel(int lineCount, int sideNodes) {
    CAnalysisData model;
    const int nodeCount = sideNodes * kWidth;
    for (int p = 0; p < nodeCount; ++p) model.nodes.emplace_back(p % kWidth, p / kWidth, 0.0);
    model.dofFixed.assign(2 * static_cast<size_t>(nodeCount), 0);
    for (int p = 0; p < kWidth; ++p) model.dofFixed[2 * p] = model.dofFixed[2 * p + 1] = 1;
    model.equationMap.assign(model.dofFixed.size(), -1);
    int next = 0;
    for (size_t d = 0; d < model.dofFixed.size(); ++d)
        if (model.dofFixed[d] == 0) model.equationMap[d] = next++;
    model.freeDofCount = next;
    model.frequencyCount = lineCount + 1;
    return model;
}

// Degrees of freedom of one side column, bottom (fixed) row included as the tool writes it.
std::vector<int> ColumnDofs(int sideNodes, int column) {
    std::vector<int> dofs;
    for (int row = 0; row < sideNodes; ++row)
        for (int d = 0; d < 2; ++d) dofs.push_back(2 * (row * kWidth + column) + d);
    return dofs;
}

void WriteBlock(const std::string& path, const std::vector<int>& dofs, int line) {
    std::ofstream out(path, std::ios::binary);
    std::vector<char> buffer(1 << 20);
    out.rdbuf()->pubsetbuf(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    char text[128];
    for (size_t a = 0; a < dofs.size(); ++a)
        for (size_t b = 0; b < dofs.size(); ++b) {
            const double re = 1.0e3 / (1.0 + static_cast<double>(a + b)) + line;
            const double im = 2.5e2 * static_cast<double>(a == b) + 1e-3 * line;
            const int n =
                std::snprintf(text, sizeof text, "%d %d %.15e %.15e\n", dofs[a], dofs[b], re, im);
            out.write(text, n);
        }
}

// The plain way: a line at a time through the formatted scan, each entry added to the row map.
void ReadLineByLine(SparseComplexMatrix& matrix, int i, const std::string& folder,
                    const CAnalysisData& model) {
    for (const char* side : {"REMat", "LEMat"}) {
        std::ifstream in(folder + side + std::to_string(i) + ".dat");
        std::string line;
        while (std::getline(in, line)) {
            int row = 0, col = 0;
            double re = 0.0, im = 0.0;
            std::sscanf(line.c_str(), "%d %d %lf %lf", &row, &col, &re, &im);
            const int r = model.equationMap[row], c = model.equationMap[col];
            if (r != -1 && c != -1) matrix.add(r, c, Complex(re, im));
        }
    }
}

double Seconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Milliseconds per line of reading every line once, on one thread.
double PerLine(int lineCount, const std::function<SparseComplexMatrix(int)>& readLine) {
    size_t entries = 0;
    const double seconds = Seconds([&] {
        for (int i = 1; i <= lineCount; ++i) entries += readLine(i).EntryCount();
    });
    if (entries == 0) std::printf("(no entries read)\n");
    return 1e3 * seconds / lineCount;
}
}  // namespace

int main(int argc, char** argv) {
    const int lineCount = argc > 1 ? std::stoi(argv[1]) : 200;
    const int sideNodes = argc > 2 ? std::stoi(argv[2]) : 100;
    const std::string folder = argc > 3 ? argv[3] : "/tmp/varnek-side-bench/";
    const CAnalysisData model = SideModel(lineCount, sideNodes);
    std::filesystem::create_directories(folder);

    const double writeSeconds = Seconds([&] {
        const std::vector<int> right = ColumnDofs(sideNodes, kWidth - 1),
                               left = ColumnDofs(sideNodes, 0);
#pragma omp parallel for schedule(guided, 1)
        for (int i = 1; i <= lineCount; ++i) {
            WriteBlock(folder + "REMat" + std::to_string(i) + ".dat", right, i);
            WriteBlock(folder + "LEMat" + std::to_string(i) + ".dat", left, i);
        }
    });
    const auto fileBytes = std::filesystem::file_size(folder + "REMat1.dat");
    std::printf(
        "%d lines, side columns of %d nodes, %d equations; %.1f MB a file, written in %.1f s\n",
        lineCount, sideNodes, model.freeDofCount, fileBytes / 1e6, writeSeconds);

    const auto fresh = [&] { return SparseComplexMatrix(static_cast<size_t>(model.freeDofCount)); };
    const double plain = PerLine(lineCount, [&](int i) {
        SparseComplexMatrix m = fresh();
        ReadLineByLine(m, i, folder, model);
        return m;
    });
    const double direct = PerLine(lineCount, [&](int i) {
        SparseComplexMatrix m = fresh();
        ReadFrequencyEMatrix(m, i, folder, model);
        return m;
    });
    std::printf("line by line, formatted scan:  %8.2f ms a line\n", plain);
    std::printf("ReadFrequencyEMatrix:          %8.2f ms a line\n", direct);

    const int threads = omp_get_max_threads();
    for (const uint64_t budget : {uint64_t(1) << 40, uint64_t(0)}) {
        std::unique_ptr<FrequencyEMatrixStore> store;
        const double scan = Seconds(
            [&] { store = std::make_unique<FrequencyEMatrixStore>(folder, model, budget); });
        const double line = PerLine(lineCount, [&](int i) { return store->Line(i); });
        std::vector<Complex> values;
        const double overPattern = 1e3 * Seconds([&] {
                                       for (int i = 1; i <= lineCount; ++i)
                                           store->LineOverPattern(i, values);
                                   }) /
                                   lineCount;
        std::printf("store %s: scan %.2f s on %d threads (%.2f ms a line); pattern %zu entries\n",
                    store->InMemory() ? "in memory" : "re-reading", scan, threads,
                    1e3 * scan / lineCount, store->Pattern().EntryCount());
        std::printf("  Line():            %8.2f ms a line\n", line);
        std::printf("  LineOverPattern(): %8.2f ms a line\n", overPattern);
    }
    std::filesystem::remove_all(folder);
    return 0;
}

#include "layered_project.hpp"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

ProjectFiles LayeredProject::Files() const {
    ProjectFiles files;
    files["Flag_VARNEK.inp"] = std::string("20200101 500 ") + (equivalentLinear ? "1" : "0") + " 1\n";
    files["input_VARNEK.inp"] =
        "constants.dat\nwave.csv\nnodes.dat\nelements.dat\nmaterials.dat\nboundary.dat\n";
    files["constants.dat"] = cutoff + "\n0\n0.01\n" + tolerance + "\n0.65\n" +
                             std::to_string(iterationLimit) + "\n" +
                             std::to_string(sideTreatment) + "\n";
    std::ostringstream wave;
    wave << "w,0.01,1\n";
    for (int k = 0; k < waveSamples; ++k)
        wave << k * 0.01 << ","
             << 250.0 * std::exp(-0.02 * k) * (std::sin(0.8 * k) + 0.5 * std::sin(2.1 * k))
             << "\n";
    files["wave.csv"] = wave.str();
    // Soft clay (table model, Vs 150 m/s), stiff soil (Vs 300 m/s), valley fill (Vs 100 m/s).
    files["materials.dat"] =
        "3\n"
        "2\n1.8\n1.8\n0\n40500\n0.35\n0.02\n3\n1e-6\n1e-4\n1e-2\n1\n0.7\n0.15\n2\n6\n18\n"
        "5\n2.0\n2.0\n0\n180000\n0.3\n0.02\n"
        "5\n1.6\n1.6\n0\n16000\n0.4\n0.03\n";

    std::ostringstream nodes, elements, boundary, stress;
    for (int r = 0; r <= layers; ++r)
        for (int c = 0; c <= columns; ++c) {
            const double lean = slanting && c == 0 ? -0.2 * r : 0.0;
            nodes << cellWidth * c + lean << " " << cellHeight * r << "\n";
        }
    stress << "---- stress ----\n";
    for (int r = 0; r < layers; ++r)
        for (int c = 0; c < columns; ++c) {
            const bool valley = 2 * c >= columns - valleyColumns &&
                                2 * c < columns + valleyColumns && r >= layers - valleyLayers;
            elements << (valley ? 2 : r >= layers / 2 ? 0 : 1) << " 4 1 " << Node(c, r) << " "
                     << Node(c + 1, r) << " " << Node(c + 1, r + 1) << " " << Node(c, r + 1)
                     << "\n";
            for (int g = 0; g < 4; ++g) stress << "1 -10 -20 -10 0 0 0\n";
        }
    for (int c = 0; c <= columns; ++c) {
        if (!dashpotBase) {
            boundary << Node(c, 0) << " 2 0 0\n";
            continue;
        }
        // Rock of 2.2 t/m3, Vs 600 m/s and Vp 1,120 m/s: rho Vs and rho Vp per metre, lumped:
        // 5/30 of the coefficient to each neighbour and 10/30 to the node itself on each of its
        // cells, so that a coefficient of 3/2 the cell width gives one per metre.
        const double perCell = 1.5 * cellWidth;
        for (const int d : {0, 1}) {
            boundary << "$VISCO " << 101 + d << " " << Node(c, 0) << " " << d << " "
                     << perCell * (d == 0 ? 1320.0 : 2464.0) << " 0 0 ";
            if (c == 0 || c == columns)
                boundary << "5 5 0 " << Node(c, 0) << " " << Node(c == 0 ? 1 : c - 1, 0)
                         << " -1\n";
            else
                boundary << "5 10 5 " << Node(c - 1, 0) << " " << Node(c, 0) << " "
                         << Node(c + 1, 0) << "\n";
        }
    }
    for (int r = 1; sideDashpots && r <= layers; ++r)
        for (const int c : {0, columns}) {
            const int below = Node(c, r - 1), above = r < layers ? Node(c, r + 1) : -1;
            boundary << "$VISCO " << (c == 0 ? 201 : 200) << " " << Node(c, r)
                     << " 0 945 0 0 5 10 5 " << below << " " << Node(c, r) << " " << above
                     << "\n";
            boundary << "$VISCO 202 " << Node(c, r) << " 1 540 0 0 5 10 5 " << below << " "
                     << Node(c, r) << " " << above << "\n";
        }
    files["nodes.dat"] = nodes.str();
    files["elements.dat"] = elements.str();
    files["boundary.dat"] = boundary.str();
    files["output0.inp"] = stress.str();
    return files;
}

LayeredProject LayeredProject::Column() const {
    LayeredProject column = *this;
    column.columns = 1;
    column.sideTreatment = 2;
    column.sideDashpots = false;
    column.valleyColumns = 0;
    return column;
}

ProjectFiles LayeredProject::ColumnFiles() const {
    const LayeredProject column = Column();
    ProjectFiles files = column.Files();
    for (int r = 0; r <= layers; ++r)
        for (int c = 0; c <= 1; ++c)
            files["boundary.dat"] += std::to_string(column.Node(c, r)) + " 1 0 0\n";
    return files;
}

void WriteProject(const std::string& folder, const ProjectFiles& files) {
    namespace fs = std::filesystem;
    fs::create_directories(folder);
    const std::string prefix = fs::absolute(folder).string() + "/";
    std::ofstream(prefix + "config_VARNEK.txt", std::ios::binary) << prefix << "\n";
    for (const auto& [name, text] : files) {
        fs::create_directories(fs::path(prefix + name).parent_path());
        std::ofstream(prefix + name, std::ios::binary) << text;
    }
}

std::vector<double> NodeAcceleration(const std::string& folder, int node) {
    std::ifstream file(folder + "/dyn/acc" + std::to_string(node + 1) + ".dat");
    std::string heading;
    std::getline(file, heading);
    std::vector<double> values;
    double t = 0.0, ax = 0.0, ay = 0.0;
    while (file >> t >> ax >> ay) values.push_back(ax);
    return values;
}

double RelativeRmsDifference(const std::vector<double>& a, const std::vector<double>& b) {
    double difference = 0.0, reference = 0.0;
    for (size_t k = 0; k < a.size() && k < b.size(); ++k) {
        difference += (a[k] - b[k]) * (a[k] - b[k]);
        reference += b[k] * b[k];
    }
    return std::sqrt(difference / reference);
}

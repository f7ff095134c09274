// Where the model was read from: the file of each part and the line of each record, with the
// numbers that the readers transform or drop on the way (the wave's samples and factor, the
// constants before the cut-off is lowered and the counts truncated). The model check shows a
// fault at its place in the project's files from here.
#pragma once

#include <string>
#include <vector>

// One sample of the wave file as written: time (s), acceleration (gal) and its line.
struct WaveSample {
    double time = 0.0;
    double value = 0.0;
    int line = 0;
};

// The lines of the numbers of one material record, by their place in the record (from 0).
struct MaterialRecordLines {
    std::vector<int> lines;

    // The line of place p, or the record's last line when the record is shorter.
    int Line(size_t place) const {
        if (lines.empty()) return 0;
        return place < lines.size() ? lines[place] : lines.back();
    }
};

struct ModelSources {
    std::string constantsPath;
    std::vector<double> constants;  // the seven analysis constants as written
    std::vector<int> constantLines;

    std::string wavePath;
    int waveHeaderLine = 0;
    double waveFactor = 0.0;  // the amplitude factor of the header
    std::vector<WaveSample> waveSamples;

    std::string nodesPath;
    std::vector<int> nodeLines;  // one a node

    std::string elementsPath;
    std::vector<int> elementLines;      // one an element
    std::vector<int> elementMaterials;  // the material index of each element

    std::string materialsPath;
    std::vector<MaterialRecordLines> materialLines;  // one a material

    std::string boundaryPath;
    std::vector<int> boundaryLines;  // one a condition of the file

    std::string selfWeightPath;
    std::vector<int> selfWeightLines;  // one an integration point, element by element

    // The line of a record in a list of lines, 0 when it is not known.
    static int LineOf(const std::vector<int>& lines, size_t index) {
        return index < lines.size() ? lines[index] : 0;
    }
};

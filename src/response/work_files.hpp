// The binary work files between the syntheses and the text results: their names and the
// addressing of stress and strain records. All lie in the current working directory.
//
// Node family (f64 pairs, little-endian): "work_disp.dat" and "work_acc.dat" hold x, y of every
// step, node-major; "work_Mdisp.dat" and "work_Macc.dat" the largest absolute x, y per node.
// Integration-point records: six f32 (24 bytes). Either one single set for all elements, or one
// numbered set per element group.
//
// Names that the old program spelled with differing capitals ("work_AveStress.dat" and
// "work_Avestress.dat", "work_Stress.dat" and "work_stress.dat", ...) are one file each; the
// spellings below are the only ones used, by writer, readers and remover alike.
#pragma once

#include <cstdint>
#include <string>

namespace work_files {

inline const std::string kDisp = "work_disp.dat";
inline const std::string kAcc = "work_acc.dat";
inline const std::string kMaxDisp = "work_Mdisp.dat";
inline const std::string kMaxAcc = "work_Macc.dat";

// The single set.
inline const std::string kStress = "work_stress.dat";
inline const std::string kStrain = "work_strain.dat";
inline const std::string kMaxStress = "work_Mstress.dat";
inline const std::string kMaxStrain = "work_Mstrain.dat";
inline const std::string kElementStress = "work_AveStress.dat";

// The numbered sets of element group k.
inline std::string Stress(int k) {
    return "work_stress" + std::to_string(k) + ".dat";
}
inline std::string Strain(int k) {
    return "work_strain" + std::to_string(k) + ".dat";
}
inline std::string MaxStress(int k) {
    return "work_Mstress" + std::to_string(k) + ".dat";
}
inline std::string MaxStrain(int k) {
    return "work_Mstrain" + std::to_string(k) + ".dat";
}
inline std::string ElementStress(int k) {
    return "work_Avestress" + std::to_string(k) + ".dat";
}

}  // namespace work_files

// Address of the first f32 of a stress or strain record: ((4 e + g) S + t) 6.
// The factor 4 is fixed whatever the element's point count: meshes of 4-node elements are read
// back record by record, and other meshes are read at these same positions, as the result files
// have always been laid out. Positions are computed in 64 bits, so that files beyond 4 GiB are
// addressed correctly.
struct WorkRecordIndex {
    uint64_t elementCount = 0;
    uint64_t stepStride = 1;  // S: the wave's step count, or 1

    static constexpr uint64_t kPointsPerElement = 4;
    static constexpr uint64_t kValuesPerRecord = 6;

    uint64_t Position(uint64_t e, uint64_t g, uint64_t t) const {
        return ((kPointsPerElement * e + g) * stepStride + t) * kValuesPerRecord;
    }
    uint64_t BytePosition(uint64_t e, uint64_t g, uint64_t t) const {
        return 4 * Position(e, g, t);
    }
};

// The material file: a stream of numbers, one a line. The first is the number of materials;
// then come the records one after another, each beginning with its code, which fixes its
// length: 7 numbers for the elastic model (5), 18 for the GHE model (4), 8 + 3n for the table
// model of n rows (any other code).
#include <algorithm>
#include <boost/make_shared.hpp>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <string>

#include "input/line_reader.hpp"
#include "input/model_readers.hpp"
#include "model/analysis_data.hpp"

namespace {

constexpr size_t kCommonLength = 7;
constexpr size_t kGheLength = 18;
constexpr size_t kTableHeadLength = 8;

// The numbers of the file with a cursor on the current record.
class RecordCursor {
  public:
    RecordCursor(const std::string& path, const NumberList& numbers)
        : path_(path), numbers_(numbers) {}

    // Stops the run unless the record at start holds length numbers.
    void Require(size_t start, uint64_t length, int materialIndex) const {
        const size_t available = numbers_.values.size();
        if (start <= available && length <= available - start) return;
        const int line = numbers_.lines.empty() ? 0 : numbers_.lines.back();
        StopOnBadInput(path_, line,
                       "material " + std::to_string(materialIndex) + " needs " +
                           std::to_string(length) + " numbers, the file ends after " +
                           std::to_string(available - std::min(start, available)));
    }
    double operator[](size_t i) const { return numbers_.values[i]; }
    int LineOf(size_t i) const { return numbers_.lines[i]; }

  private:
    const std::string& path_;
    const NumberList& numbers_;
};

void ReadCommonFields(DAT_Material& m, const RecordCursor& v, size_t p) {
    m.rho1 = v[p + 1];
    m.rho2 = v[p + 2];
    m.value3 = v[p + 3];
    m.G0 = v[p + 4];
    m.G = v[p + 4];
    m.nu = v[p + 5];
    m.h = v[p + 6];  // a fraction
    m.UpdateModuli();
}

bool NearOne(double value) {
    return std::fabs(value - 1.0) < 1e-05;
}

boost::shared_ptr<DAT_Material> ReadGheRecord(const RecordCursor& v, size_t p) {
    auto m = boost::make_shared<DAT_GHEmodel>();
    m->type = MaterialModel::kHyperbolic;
    ReadCommonFields(*m, v, p);
    m->phi = (v[p + 7] / 180.0) * std::numbers::pi;  // degrees in the file
    m->c = v[p + 8];
    m->beta1 = v[p + 9];
    m->beta2 = v[p + 10];
    m->C1at0 = v[p + 11];
    m->C1atInf = v[p + 12];
    m->C2at0 = v[p + 13];
    m->C2atInf = v[p + 14];
    m->hExponent = v[p + 15];
    m->hmax = v[p + 16];
    m->strengthDivisor = v[p + 17];
    // With all four C values at 1 the curve is the plain hyperbola.
    m->isHyperbolic =
        NearOne(m->C1at0) && NearOne(m->C1atInf) && NearOne(m->C2at0) && NearOne(m->C2atInf);
    return m;
}

// Fills the tables of a table record of n rows: n strains, n modulus terms, n damping ratios in
// percent.
boost::shared_ptr<DAT_Material> ReadTableRecord(const RecordCursor& v, size_t p, size_t n) {
    auto m = boost::make_shared<DAT_Othermoel>();
    m->type = MaterialModel::kTable;
    ReadCommonFields(*m, v, p);
    const size_t first = p + kTableHeadLength;
    for (size_t j = 0; j < n; ++j) {
        m->strainTable.push_back(v[first + j]);
        m->gTable.push_back(v[first + n + j]);
        m->hTable.push_back(v[first + 2 * n + j] * 0.01);
    }
    return m;
}

}  // namespace

void ReadMaterials(MaterialList& list, const std::string& path,
                   std::vector<MaterialRecordLines>* recordLines) {
    if (path.empty()) return;
    const NumberList numbers = ReadNumbers(path, "dConstantData:Reading error");
    if (numbers.values.empty()) StopOnBadInput(path, 0, "the file gives no number of materials");
    const RecordCursor v(path, numbers);
    const int count = TruncateToInt(v[0]);
    size_t p = 1;
    for (int index = 0; index < count; ++index) {
        v.Require(p, 1, index);
        const int code = TruncateToInt(v[p]);
        boost::shared_ptr<DAT_Material> material;
        size_t length = kCommonLength;
        if (code == static_cast<int>(MaterialModel::kElastic)) {
            v.Require(p, length, index);
            auto elastic = boost::make_shared<DAT_Elastic>();
            elastic->type = MaterialModel::kElastic;
            ReadCommonFields(*elastic, v, p);
            material = elastic;
        } else if (code == static_cast<int>(MaterialModel::kHyperbolic)) {
            length = kGheLength;
            v.Require(p, length, index);
            material = ReadGheRecord(v, p);
        } else {
            v.Require(p, kTableHeadLength, index);
            const int rows = TruncateToInt(v[p + kTableHeadLength - 1]);
            // The lookup interpolates between two neighbouring rows, so it needs two.
            if (rows < 2) {
                StopOnBadInput(path, v.LineOf(p + kTableHeadLength - 1),
                               "material " + std::to_string(index) + " has a table of " +
                                   std::to_string(rows) + " rows, at least 2 are needed");
            }
            const uint64_t tableLength = kTableHeadLength + 3 * static_cast<uint64_t>(rows);
            v.Require(p, tableLength, index);
            length = static_cast<size_t>(tableLength);
            material = ReadTableRecord(v, p, static_cast<size_t>(rows));
        }
        list.push_back(material);
        if (recordLines != nullptr) {
            const auto first = numbers.lines.begin() + static_cast<std::ptrdiff_t>(p);
            recordLines->push_back(
                {std::vector<int>(first, first + static_cast<std::ptrdiff_t>(length))});
        }
        p += length;
    }
}

#include "response/stress_strain_synthesis.hpp"

#include "response/element_stress_pass.hpp"
#include "support/result_model_fixture.hpp"

namespace {

namespace fs = std::filesystem;

constexpr size_t kP = 64;
constexpr size_t kSteps = 50;

// Distinct initial stresses: element e, point g.
Vector4 InitialStress(size_t e, size_t g) {
    return {-1.0 - e - 0.1 * g, -2.0 * (e + 1), -0.5 - 0.01 * g, 0.01 * g};
}

class StressStrainSynthesis : public SynthesisTest {
  protected:
    StressStrainSynthesis() { SetWave(analysis, std::vector<double>(kSteps, 1.0), kP, 0.01, 10); }

    // 4-, 6- and 8-node elements in unit cells along x; moduli of G = 100 + 8i MPa, L = 1.5 G.
    void BuildStrip(const std::vector<int>& nodeCounts) {
        boost::shared_ptr<DAT_Material> material(new DAT_Elastic());
        material->D = ComplexMatrix(4, 4);
        for (uint32_t i = 0; i < 4; ++i)
            for (uint32_t j = 0; j < 4; ++j)
                material->D(i, j) = Complex(100.0, 8.0) *
                                    (i == 3 || j == 3 ? double(i == j) : (i == j ? 3.5 : 1.5));
        for (int n : nodeCounts) {
            const double x0 = static_cast<double>(analysis.elements.size());
            // Local node positions in the unit cell, in the orders of the shape functions.
            std::vector<std::pair<double, double>> at = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
            if (n == 8) at.insert(at.end(), {{0.5, 0}, {1, 0.5}, {0.5, 1}, {0, 0.5}});
            if (n == 6) at = {{1, 0}, {0, 1}, {0, 0}, {0, 0.5}, {0.5, 0}, {0.5, 0.5}};
            std::vector<int> nodes;
            for (const auto& [x, y] : at) nodes.push_back(AddNode(analysis, x0 + x, y));
            CElement& element =
                AddElement(analysis, nodes, n == 6 ? 7 : (n == 8 ? 3 : 2), material);
            element.usesFirstDensity = true;
            for (size_t g = 0; g < element.gaussPoints.size(); ++g) {
                const Vector4 s = InitialStress(analysis.elements.size() - 1, g);
                element.gaussPoints[g].stress = RealVector{s[0], s[1], s[2], s[3]};
            }
        }
    }

    // The serial pass with its progress line caught.
    std::string RunSerial() {
        testing::internal::CaptureStdout();
        CalcStressStrainSerial(analysis);
        return testing::internal::GetCapturedStdout();
    }

    // Without response the records of elements [first, last) hold the initial stress, its mean and
    // deviatoric norm, strains are zero, the element stress is 250 times the points' sum (kPa).
    void ExpectInitialStressEverywhere(const StressStrainFileNames& names, size_t first,
                                       size_t last, size_t recordedSteps) const {
        size_t points = 0;
        for (size_t e = first; e < last; ++e) points += analysis.elements[e].gaussCount;
        const std::vector<float> stress = ReadValues<float>(names.stress),
                                 maxStress = ReadValues<float>(names.maxStress),
                                 elementStress = ReadValues<float>(names.elementStress);
        EXPECT_EQ(ReadValues<float>(names.strain), std::vector<float>(points * recordedSteps * 6));
        EXPECT_EQ(ReadValues<float>(names.maxStrain), std::vector<float>(points * 6));
        ASSERT_EQ(
            std::make_tuple(stress.size(), maxStress.size(), elementStress.size()),
            std::make_tuple(points * recordedSteps * 6, points * 6, (last - first) * kSteps * 3));
        const WorkRecordIndex index{last - first, recordedSteps};
        for (size_t e = first, record = 0, point = 0; e < last; ++e) {
            Vector4 sum{};
            for (size_t g = 0; g < size_t(analysis.elements[e].gaussCount); ++g, ++point) {
                const Vector4 s = InitialStress(e, g);
                for (int i = 0; i < 4; ++i) sum[i] += s[i];
                const double mean = (s[0] + s[1] + s[2]) * -0.3333333333333333;
                const double dev =
                    std::sqrt(0.5 * (std::pow(s[0] + mean, 2) + std::pow(s[1] + mean, 2) +
                                     std::pow(s[2] + mean, 2) + 2 * s[3] * s[3]));
                const float expected[6] = {float(s[0]), float(s[1]), float(s[2]),
                                           float(s[3]), float(mean), float(dev)};
                for (size_t t = 0; t <= recordedSteps; ++t) {
                    const bool peak = t == recordedSteps;  // the peak record, in absolute values
                    const float* r = peak ? &maxStress[6 * point] : &stress[6 * (record + t)];
                    for (int i = 0; i < 5; ++i)
                        EXPECT_EQ(r[i], peak ? std::abs(expected[i]) : expected[i]);
                    EXPECT_FLOAT_EQ(r[5], expected[5]);
                    // Where all elements before are 4-node ones, where the record index points.
                    if (!peak && point == 4 * (e - first) + g) {
                        EXPECT_EQ(6 * (record + t), index.Position(e - first, g, t));
                    }
                }
                record += recordedSteps;
            }
            for (size_t t = 0; t < kSteps; ++t)
                for (int i = 0; i < 3; ++i)
                    EXPECT_FLOAT_EQ(elementStress[((e - first) * kSteps + t) * 3 + i],
                                    float(sum[i == 2 ? 3 : i] * 250.0));
        }
    }
};

// The single set holds step 0, the groups every step; more groups than elements leave the first
// ones with five empty files.
TEST_F(StressStrainSynthesis, WithoutResponseEveryRecordIsTheInitialStressOnBothPaths) {
    BuildStrip({4, 4, 6, 8});
    EXPECT_EQ(RunSerial(),
              "\r 応力ひずみ計算中　[ 0 / 4 ] \r 応力ひずみ計算中　[ 1 / 4 ] "
              "\r 応力ひずみ計算中　[ 2 / 4 ] \r 応力ひずみ計算中　[ 3 / 4 ] ");
    ExpectInitialStressEverywhere(SingleSetNames(), 0, 4, 1);
    RunStressStrainGroups(analysis, 2, {2, 2});
    ExpectInitialStressEverywhere(GroupSetNames(0), 0, 2, kSteps);
    ExpectInitialStressEverywhere(GroupSetNames(1), 2, 4, kSteps);
    RunStressStrainGroups(analysis, 3, {0, 0, 4});
    for (int k = 0; k < 2; ++k) {
        const StressStrainFileNames names = GroupSetNames(k);
        for (const std::string& f :
             {names.strain, names.stress, names.maxStrain, names.maxStress, names.elementStress})
            EXPECT_EQ(fs::exists(f) ? fs::file_size(f) : 1u, 0u) << f;
    }
    ExpectInitialStressEverywhere(GroupSetNames(2), 0, 4, kSteps);
}

// A linear displacement field at one line gives every point of every kind the same cosine strain
// history and the stress of the moduli; the single set holds step 0 and the same peaks.
TEST_F(StressStrainSynthesis, UniformStrainFieldFollowsItsLineAtEveryPointOnBothPaths) {
    std::vector<double> wave(kSteps);
    for (size_t t = 0; t < kSteps; ++t) wave[t] = std::sin(0.3 * t) + 0.2 * std::cos(1.7 * t);
    SetWave(analysis, wave, kP, 0.01, 10);
    BuildStrip({4, 6, 8});
    analysis.elements[0].material->D(0, 3) = 5.0;  // shared; unsymmetric, so never read transposed
    const size_t k = 4;
    const Complex a(2e-3, -1e-3), b(0.5e-3, 0.0), c(-1e-3, 0.4e-3), d(0.7e-3, 0.2e-3);
    for (CNode& node : analysis.nodes) {
        node.dispX[k] = a * node.x + b * node.y;
        node.dispY[k] = c * node.x + d * node.y;
    }
    RunSerial();
    RunStressStrainGroups(analysis, 1, {3});
    const std::vector<float> strain = ReadValues<float>(work_files::Strain(0)),
                             stress = ReadValues<float>(work_files::Stress(0)),
                             serialStrain = ReadValues<float>(work_files::kStrain),
                             serialMax = ReadValues<float>(work_files::kMaxStress);
    EXPECT_EQ(ReadValues<float>(work_files::MaxStress(0)), serialMax);
    const double G = 100.0, L = 150.0;
    for (size_t e = 0, p = 0; e < 3; ++e)
        for (size_t g = 0; g < size_t(analysis.elements[e].gaussCount); ++g, ++p) {
            const Vector4 s0 = InitialStress(e, g);
            double peakX = 0.0;
            for (size_t t = 0; t < kSteps; ++t) {
                const Complex line = 2.0 * analysis.waveSpectrum[k] *
                                     std::polar(1.0, 2.0 * std::numbers::pi * k * t / kP);
                const double ex = (line * a).real(), ey = (line * d).real();
                const double gxy = (line * (b + c)).real(),
                             sx = (L + 2 * G) * ex + L * ey + 5.0 * gxy + s0[0];
                const float* rec = &strain[(p * kSteps + t) * 6];
                const float* srec = &stress[(p * kSteps + t) * 6];
                const double m = (ex + ey) / 3.0,
                             devStrain =
                                 std::sqrt(2.0 * (std::pow(ex - m, 2) + std::pow(ey - m, 2) +
                                                  m * m + gxy * gxy / 2));
                const double expected[6] = {ex, ey, 0.0, gxy, ex + ey, devStrain};
                for (int i = 0; i < 6; ++i) EXPECT_NEAR(rec[i], expected[i], 1e-9) << i;
                EXPECT_NEAR(srec[0], sx, 1e-5);
                EXPECT_NEAR(srec[3], G * gxy + s0[3], 1e-5);
                peakX = std::max(peakX, std::abs(sx));
                for (int i = 0; i < 6 && t == 0; ++i) EXPECT_EQ(serialStrain[p * 6 + i], rec[i]);
            }
            EXPECT_NEAR(serialMax[p * 6], peakX, 1e-5);
        }
}

}  // namespace

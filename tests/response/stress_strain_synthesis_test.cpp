#include "response/stress_strain_synthesis.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <numbers>

#include "response/element_stress_pass.hpp"
#include "response/synthesis_model.hpp"
#include "response/work_files.hpp"
#include "support/project_fixture.hpp"

namespace {

namespace fs = std::filesystem;

constexpr size_t kP = 64;
constexpr size_t kSteps = 50;

// Distinct initial stresses: element e, point g.
Vector4 InitialStress(size_t e, size_t g) {
    return {-1.0 - e - 0.1 * g, -2.0 * (e + 1), -0.5 - 0.01 * g, 0.01 * g};
}

class StressStrainSynthesis : public ::testing::Test {
  protected:
    ProjectFolder project;
    WorkingDirectory cwd{project.Root()};
    CAnalysisData analysis;
    boost::shared_ptr<DAT_Material> material = ElasticMaterial(Complex(100.0, 8.0), 0.3);

    void SetUp() override { SetWave(analysis, std::vector<double>(kSteps, 1.0), kP, 0.01, 10); }

    void BuildStrip(const std::vector<int>& nodeCounts) {
        AddStrip(analysis, nodeCounts, material);
        for (size_t e = 0; e < analysis.elements.size(); ++e) {
            std::vector<CGauss>& points = analysis.elements[e].gaussPoints;
            for (size_t g = 0; g < points.size(); ++g) {
                const Vector4 s = InitialStress(e, g);
                points[g].stress = RealVector{s[0], s[1], s[2], s[3]};
            }
        }
    }

    // The serial pass with its progress line caught.
    std::string RunSerial() {
        testing::internal::CaptureStdout();
        analysis.CalcStressStrainSerial();
        return testing::internal::GetCapturedStdout();
    }

    size_t PointCount(size_t first, size_t last) const {
        size_t n = 0;
        for (size_t e = first; e < last; ++e) n += analysis.elements[e].gaussCount;
        return n;
    }

    // Sizes of one set of files over elements [first, last) with the given recorded steps.
    void ExpectSizes(const StressStrainFileNames& names, size_t first, size_t last,
                     size_t recordedSteps) const {
        const size_t points = PointCount(first, last);
        EXPECT_EQ(fs::file_size(names.stress), points * recordedSteps * 24);
        EXPECT_EQ(fs::file_size(names.strain), points * recordedSteps * 24);
        EXPECT_EQ(fs::file_size(names.maxStress), points * 24);
        EXPECT_EQ(fs::file_size(names.maxStrain), points * 24);
        EXPECT_EQ(fs::file_size(names.elementStress), (last - first) * kSteps * 12);
    }

    // With no response every record holds the initial stress; strains are zero.
    void ExpectInitialStressEverywhere(const StressStrainFileNames& names, size_t first,
                                       size_t last, size_t recordedSteps) const {
        ExpectSizes(names, first, last, recordedSteps);
        const std::vector<float> stress = ReadF32(names.stress);
        const std::vector<float> strain = ReadF32(names.strain);
        const std::vector<float> maxStress = ReadF32(names.maxStress);
        const std::vector<float> maxStrain = ReadF32(names.maxStrain);
        const std::vector<float> elementStress = ReadF32(names.elementStress);
        size_t record = 0, point = 0;
        for (size_t e = first; e < last; ++e) {
            Vector4 sum{};
            for (size_t g = 0; g < size_t(analysis.elements[e].gaussCount); ++g, ++point) {
                const Vector4 s = InitialStress(e, g);
                for (int i = 0; i < 4; ++i) sum[i] += s[i];
                const float mean = float((s[0] + s[1] + s[2]) * -0.3333333333333333);
                for (size_t t = 0; t < recordedSteps; ++t, ++record) {
                    for (int i = 0; i < 4; ++i) EXPECT_EQ(stress[6 * record + i], float(s[i]));
                    EXPECT_EQ(stress[6 * record + 4], mean);
                    for (int i = 0; i < 6; ++i) EXPECT_EQ(strain[6 * record + i], 0.0f);
                }
                for (int i = 0; i < 4; ++i)
                    EXPECT_EQ(maxStress[6 * point + i], float(std::abs(s[i])));
                EXPECT_EQ(maxStress[6 * point + 4], std::abs(mean));
                for (int i = 0; i < 6; ++i) EXPECT_EQ(maxStrain[6 * point + i], 0.0f);
            }
            for (size_t t = 0; t < kSteps; ++t) {
                const float* kPa = &elementStress[((e - first) * kSteps + t) * 3];
                EXPECT_FLOAT_EQ(kPa[0], float(sum[0] * 250.0));
                EXPECT_FLOAT_EQ(kPa[1], float(sum[1] * 250.0));
                EXPECT_FLOAT_EQ(kPa[2], float(sum[3] * 250.0));
            }
        }
    }
};

TEST_F(StressStrainSynthesis, WithoutResponseEveryGroupRecordIsTheInitialStress) {
    BuildStrip({4, 6, 8, 4});
    analysis.RunStressStrainGroups(2, {1, 3});
    ExpectInitialStressEverywhere(GroupSetNames(0), 0, 1, kSteps);
    ExpectInitialStressEverywhere(GroupSetNames(1), 1, 4, kSteps);
}

TEST_F(StressStrainSynthesis, WithoutResponseTheSingleSetHoldsStepZeroAndAllStepsElsewhere) {
    BuildStrip({4, 6, 8, 4});
    const std::string progress = RunSerial();
    ExpectInitialStressEverywhere(SingleSetNames(), 0, 4, 1);
    EXPECT_EQ(progress,
              "\r 応力ひずみ計算中　[ 0 / 4 ] \r 応力ひずみ計算中　[ 1 / 4 ] "
              "\r 応力ひずみ計算中　[ 2 / 4 ] \r 応力ひずみ計算中　[ 3 / 4 ] ");
}

TEST_F(StressStrainSynthesis, FourNodeRecordsLieWhereTheRecordIndexPointsWithinTheirGroup) {
    BuildStrip({4, 4, 4, 4, 4});
    analysis.RunStressStrainGroups(2, {2, 3});
    const std::vector<float> second = ReadF32(work_files::Stress(1));
    const WorkRecordIndex index{3, kSteps};
    for (size_t e = 0; e < 3; ++e)
        for (size_t g = 0; g < 4; ++g)
            for (size_t t : {size_t(0), size_t(17), kSteps - 1})
                EXPECT_EQ(second.at(index.Position(e, g, t)), float(InitialStress(2 + e, g)[0]));
}

TEST_F(StressStrainSynthesis, GroupsOfNoElementsStillCreateTheirFiveEmptyFiles) {
    BuildStrip({4, 8, 6});
    // More groups than elements: the first ones are empty, the last starts at element 0.
    analysis.RunStressStrainGroups(3, {0, 0, 3});
    for (int k = 0; k < 2; ++k) {
        const StressStrainFileNames names = GroupSetNames(k);
        for (const std::string& f :
             {names.strain, names.stress, names.maxStrain, names.maxStress, names.elementStress}) {
            ASSERT_TRUE(fs::exists(f)) << f;
            EXPECT_EQ(fs::file_size(f), 0u) << f;
        }
    }
    ExpectInitialStressEverywhere(GroupSetNames(2), 0, 3, kSteps);
}

TEST_F(StressStrainSynthesis, NoStepsLeaveZeroMaximaAndNothingElse) {
    SetWave(analysis, {}, kP, 0.01, 10);
    BuildStrip({4, 6});
    RunSerial();
    analysis.RunStressStrainGroups(1, {2});
    for (const StressStrainFileNames& names : {SingleSetNames(), GroupSetNames(0)}) {
        EXPECT_EQ(fs::file_size(names.stress), 0u);
        EXPECT_EQ(fs::file_size(names.strain), 0u);
        EXPECT_EQ(fs::file_size(names.elementStress), 0u);
        EXPECT_EQ(ReadF32(names.maxStress), std::vector<float>(6 * 11, 0.0f));
        EXPECT_EQ(ReadF32(names.maxStrain), std::vector<float>(6 * 11, 0.0f));
    }
}

// A linear displacement field at one frequency line gives every point of every element kind
// the same strain history: a cosine of that line with the wave's amplitude there.
TEST_F(StressStrainSynthesis, UniformStrainFieldFollowsItsLineAtEveryPointOnBothPaths) {
    std::vector<double> wave(kSteps);
    for (size_t t = 0; t < kSteps; ++t) wave[t] = std::sin(0.3 * t) + 0.2 * std::cos(1.7 * t);
    SetWave(analysis, wave, kP, 0.01, 10);
    BuildStrip({4, 6, 8});
    const size_t k = 4;
    const Complex a(2e-3, -1e-3), b(0.5e-3, 0.0), c(-1e-3, 0.4e-3), d(0.7e-3, 0.2e-3);
    for (CNode& node : analysis.nodes) {
        node.dispX[k] = a * node.x + b * node.y;
        node.dispY[k] = c * node.x + d * node.y;
    }
    RunSerial();
    analysis.RunStressStrainGroups(2, {1, 2});

    const Complex F = analysis.waveSpectrum[k];
    auto history = [&](Complex amplitude, size_t t) {
        return 2.0 * (F * amplitude * std::polar(1.0, 2.0 * std::numbers::pi * k * t / kP)).real();
    };
    const double nu = 0.3, G = 100.0, L = 2.0 * G * nu / (1.0 - 2.0 * nu);
    std::vector<float> strain[2] = {ReadF32(work_files::Strain(0)), ReadF32(work_files::Strain(1))};
    std::vector<float> stress[2] = {ReadF32(work_files::Stress(0)), ReadF32(work_files::Stress(1))};
    const std::vector<float> serialStrain = ReadF32(work_files::kStrain);
    const std::vector<float> serialMax = ReadF32(work_files::kMaxStress);
    std::vector<float> groupMax = ReadF32(work_files::MaxStress(0));
    const std::vector<float> groupMax1 = ReadF32(work_files::MaxStress(1));
    groupMax.insert(groupMax.end(), groupMax1.begin(), groupMax1.end());

    size_t point = 0;
    for (size_t e = 0; e < 3; ++e) {
        const int group = e == 0 ? 0 : 1;
        const size_t firstPoint = e == 0 ? 0 : 4;
        for (size_t g = 0; g < size_t(analysis.elements[e].gaussCount); ++g, ++point) {
            double peakX = 0.0;
            for (size_t t = 0; t < kSteps; ++t) {
                const double ex = history(a, t), ey = history(d, t), gxy = history(b + c, t);
                const Vector4 s0 = InitialStress(e, g);
                const double sx = (L + 2 * G) * ex + L * ey + s0[0];
                const float* rec = &strain[group][((point - firstPoint) * kSteps + t) * 6];
                EXPECT_NEAR(rec[0], ex, 1e-6 * 1e-3);
                EXPECT_NEAR(rec[1], ey, 1e-6 * 1e-3);
                EXPECT_EQ(rec[2], 0.0f);
                EXPECT_NEAR(rec[3], gxy, 1e-6 * 1e-3);
                EXPECT_NEAR(rec[4], ex + ey, 1e-6 * 1e-3);
                const float* srec = &stress[group][((point - firstPoint) * kSteps + t) * 6];
                EXPECT_NEAR(srec[0], sx, 1e-5);
                EXPECT_NEAR(srec[3], G * gxy + s0[3], 1e-5);
                peakX = std::max(peakX, std::abs(sx));
                if (t == 0) {
                    for (int i = 0; i < 6; ++i) EXPECT_EQ(serialStrain[point * 6 + i], rec[i]);
                }
            }
            EXPECT_NEAR(serialMax[point * 6], peakX, 1e-5);
            for (int i = 0; i < 6; ++i)
                EXPECT_EQ(serialMax[point * 6 + i], groupMax[point * 6 + i]);
        }
    }
}

}  // namespace

#include "run/model_preparation.hpp"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <vector>

#include "input/reader_test_support.hpp"

namespace {

CAnalysisData MeshOfNodes(int count) {
    CAnalysisData analysis = AnalysisWithWave(4);
    for (int i = 0; i < count; ++i) analysis.nodes.emplace_back(i, 0.0, 0.0);
    analysis.dofFixed.assign(2 * static_cast<size_t>(count), 0);
    analysis.equationMap.assign(2 * static_cast<size_t>(count), 0);
    return analysis;
}

void AddCondition(CAnalysisData& analysis, int node, int code) {
    analysis.boundaryConds.push_back(boost::make_shared<CBoundaryCond>(node, 0.0, 0.0, code));
}

TEST(ModelPreparation, StrainDependentElementsGetPrivateMaterials) {
    CAnalysisData analysis;
    auto elastic = boost::make_shared<DAT_Elastic>();
    elastic->type = 5;
    auto ghe = boost::make_shared<DAT_GHEmodel>();
    ghe->type = 4;
    ghe->phi = 0.5;
    auto table = boost::make_shared<DAT_Othermoel>();
    table->type = 2;
    table->strainTable = {1e-5, 1e-3};
    for (const boost::shared_ptr<DAT_Material>& m :
         std::vector<boost::shared_ptr<DAT_Material>>{elastic, elastic, ghe, ghe, table}) {
        CElement element;
        element.material = m;
        analysis.elements.push_back(element);
    }
    GivePrivateMaterials(analysis);
    const auto& e = analysis.elements;
    EXPECT_EQ(e[0].material.get(), elastic.get());
    EXPECT_EQ(e[1].material.get(), elastic.get());
    EXPECT_NE(e[2].material.get(), ghe.get());
    EXPECT_NE(e[2].material.get(), e[3].material.get());
    EXPECT_DOUBLE_EQ(dynamic_cast<const DAT_GHEmodel&>(*e[3].material).phi, 0.5);
    EXPECT_NE(e[4].material.get(), table.get());
    EXPECT_EQ(dynamic_cast<const DAT_Othermoel&>(*e[4].material).strainTable, table->strainTable);
}

TEST(ModelPreparation, CodesZeroToTwoFixAndTheViscousCodesDoNot) {
    CAnalysisData analysis = MeshOfNodes(5);
    AddCondition(analysis, 0, 0);
    AddCondition(analysis, 1, 1);
    AddCondition(analysis, 2, 2);
    for (int code : {3, 4, 5, 100, 101, 102, 200, 201, 202}) AddCondition(analysis, 3, code);
    DispBoundary(analysis);
    EXPECT_EQ(analysis.dofFixed, (std::vector<int32_t>{1, 0, 0, 1, 1, 1, 0, 0, 0, 0}));

    NumberEquations(analysis);
    EXPECT_EQ(analysis.equationMap, (std::vector<int32_t>{-1, 0, 1, -1, -1, -1, 2, 3, 4, 5}));
    EXPECT_EQ(analysis.freeDofCount, 6);
}

TEST(ModelPreparationDeathTest, UnknownCodeEndsTheRunWithStatusZero) {
    CAnalysisData analysis = MeshOfNodes(2);
    AddCondition(analysis, 0, 2);
    AddCondition(analysis, 1, 103);
    EXPECT_EXIT(
        {
            StdoutToStderr();
            DispBoundary(analysis);
        },
        testing::ExitedWithCode(0), "^DispBoundary ERROR\n$");
}

TEST(ModelPreparationDeathTest, ConditionOutsideTheNodeListStops) {
    CAnalysisData analysis = MeshOfNodes(2);
    AddCondition(analysis, 1, 0);
    AddCondition(analysis, 2, 1);
    EXPECT_EXIT(DispBoundary(analysis), testing::ExitedWithCode(2),
                "boundary condition 1: node 2 is not in the node list of 2");
}

}  // namespace

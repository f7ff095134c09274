#include "solve/model_preparation.hpp"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <utility>
#include <vector>

#include "support/reader_test_support.hpp"

namespace {

// Nodes in a row with conditions of the given codes, as (node, code).
CAnalysisData NodesWithConditions(int count, const std::vector<std::pair<int, int>>& conditions) {
    CAnalysisData analysis = AnalysisWithWave(4);
    for (int i = 0; i < count; ++i) analysis.nodes.emplace_back(i, 0.0, 0.0);
    analysis.dofFixed.assign(2 * static_cast<size_t>(count), 0);
    analysis.equationMap.assign(2 * static_cast<size_t>(count), 0);
    for (const auto& [node, code] : conditions)
        analysis.boundaryConds.push_back(boost::make_shared<CBoundaryCond>(node, 0.0, 0.0, code));
    return analysis;
}

// Copies of the full material: a copy cut down to the base class would lose its curves.
TEST(ModelPreparation, StrainDependentElementsGetPrivateMaterials) {
    auto elastic = boost::make_shared<DAT_Elastic>();
    elastic->type = MaterialModel::kElastic;
    auto ghe = boost::make_shared<DAT_GHEmodel>();
    ghe->type = MaterialModel::kHyperbolic;
    ghe->phi = 0.5;
    CAnalysisData analysis;
    for (const auto& m : std::vector<boost::shared_ptr<DAT_Material>>{elastic, elastic, ghe, ghe}) {
        analysis.elements.emplace_back();
        analysis.elements.back().material = m;
    }
    GivePrivateMaterials(analysis);
    const auto& e = analysis.elements;
    EXPECT_EQ(e[0].material.get(), elastic.get());
    EXPECT_EQ(e[1].material.get(), elastic.get());
    EXPECT_NE(e[2].material.get(), ghe.get());
    EXPECT_NE(e[2].material.get(), e[3].material.get());
    EXPECT_DOUBLE_EQ(dynamic_cast<const DAT_GHEmodel&>(*e[3].material).phi, 0.5);
}

TEST(ModelPreparation, CodesZeroToTwoFixAndTheViscousCodesDoNot) {
    std::vector<std::pair<int, int>> conditions{{0, 0}, {1, 1}, {2, 2}};
    for (int code : {3, 4, 5, 100, 101, 102, 200, 201, 202}) conditions.emplace_back(3, code);
    CAnalysisData analysis = NodesWithConditions(5, conditions);
    DispBoundary(analysis);
    EXPECT_EQ(analysis.dofFixed, (std::vector<int32_t>{1, 0, 0, 1, 1, 1, 0, 0, 0, 0}));
    NumberEquations(analysis);
    EXPECT_EQ(analysis.equationMap, (std::vector<int32_t>{-1, 0, 1, -1, -1, -1, 2, 3, 4, 5}));
    EXPECT_EQ(analysis.freeDofCount, 6);
}

TEST(ModelPreparationDeathTest, UnknownCodeEndsTheRunWithStatusZeroAndUnknownNodeWithTwo) {
    CAnalysisData unknownCode = NodesWithConditions(2, {{0, 2}, {1, 103}});
    EXPECT_EXIT((StdoutToStderr(), DispBoundary(unknownCode)), testing::ExitedWithCode(0),
                "^DispBoundary ERROR\n$");
    CAnalysisData unknownNode = NodesWithConditions(2, {{1, 0}, {2, 1}});
    EXPECT_EXIT(DispBoundary(unknownNode), testing::ExitedWithCode(2),
                "boundary condition 1: node 2 is not in the node list of 2");
}

}  // namespace

// Faults caught here: points, targets, flags or names in the wrong place of the flat arrays, and
// results written back to the wrong dataset or in part.
#include "fit/assembly.h"

#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/arithmetic.h"
#include "fit/models.h"
#include "support/recording_host.h"

using namespace quorvane;

namespace {

constexpr double kTolerance = 0.25;

// Geometry 0 covers no point; geometry 1 has the factor 10 r from 6.1 to 6.9 cm.
const std::vector<CellGeometry> kGeometries = {{1, "far", {7.0F, 7.1F}, {1.0F, 1.0F}},
                                               {2, "here", {6.1F, 6.9F}, {61.0F, 69.0F}}};

// Dataset number `number` of a store: 10 points from 6.0 cm on, every 0.1 cm.
Dataset MakeDataset(int number) {
  Dataset dataset = EmptyDataset();
  dataset.NumPoints = 10;
  for (std::size_t p = 0; p < 10; ++p) {
    dataset.R[p] = 6.0 + 0.1 * static_cast<double>(p);
    dataset.C[p] = number + 0.01 * static_cast<double>(p * p);
    dataset.Err[p] = 0.01;
    dataset.Good[p] = kTrue;
  }
  dataset.Speed = 10000 * number;
  dataset.Temperature = 20.0F;
  dataset.RefRadius = 6.5 + 0.01 * number;
  dataset.RefConc = 0.1 * number;
  dataset.RefConc2 = 0.2 * number;
  dataset.Offset = 0.001 * number;
  dataset.ExtCoeff = 2.0 * number;
  dataset.ExtCoeff2 = 3.0 * number;
  dataset.Rmen = 5.9;
  dataset.Rbase = 7.0 + number;
  return dataset;
}

// Four datasets, of which the second, third and fourth are chosen for model `modelIndex`.
struct Session {
  explicit Session(int modelIndex) {
    for (int number = 1; number <= 4; ++number) {
      store.Datasets.push_back(MakeDataset(number));
      store.UseData.push_back(number != 1);
    }
    EXPECT_TRUE(SetupFit(setup, page, store, *FindModel(modelIndex), host));
  }
  void Assemble() {
    SetupDataArrays(fit, {setup, store.Datasets, kGeometries, kTolerance}, host);
    SetupParameterArray(fit, setup, page, store.Datasets, anyFitted);
  }
  Dataset& At(std::size_t position) { return store.Datasets[position + 1]; }

  DatasetStore store;
  FitSetup setup;
  FitPage page;
  FitState fit;
  RecordingHost host;
  bool anyFitted = false;
};

template <class T>
std::vector<T> Listed(const Array1<T>& array) {
  return std::vector<T>(array.data(), array.data() + array.size());
}

}  // namespace

TEST(SetupDataArrays, TakesGoodPointsInOrderAndMassPointsBehindThem) {
  Session session(6);
  session.setup.UseMassConservation = true;
  session.setup.SetCellChannel = {1, 1, 1};
  session.setup.RefLink = {0, 0, 2};
  session.At(1).Good[0] = session.At(1).Good[4] = session.At(1).Good[9] = kFalse;
  session.Assemble();
  const FitState& fit = session.fit;
  EXPECT_EQ(fit.FitNumPoints, 12 + 9 + 12);
  EXPECT_EQ(Listed(fit.SetPointCount), (std::vector<std::int16_t>{12, 9, 12}));
  EXPECT_EQ(Listed(fit.SetFirstPoint), (std::vector<std::int32_t>{1, 13, 22}));
  const std::vector<std::size_t> good = {1, 2, 3, 5, 6, 7, 8};
  const Dataset& dataset = session.At(1);
  const double linked = session.At(0).RefRadius;
  for (int k = 0; k < 9; ++k) {
    const int i = 13 + k;
    const bool mass = k >= 7;
    const std::size_t p = good[static_cast<std::size_t>(std::min(k, 6))];
    EXPECT_EQ(fit.FitR(i), dataset.R[p]);
    EXPECT_DOUBLE_EQ(fit.FitX(i), (dataset.R[p] * dataset.R[p] - linked * linked) / 2.0);
    EXPECT_EQ(fit.FitSet(i), 2);
    EXPECT_EQ(fit.PointKind(i), mass ? k - 6 : 0);
    EXPECT_DOUBLE_EQ(fit.FitY(i), mass ? (dataset.C[8] - dataset.C[1]) / kTolerance : dataset.C[p]);
    EXPECT_NEAR(fit.FitF(i), mass ? 0.0 : 10.0 * dataset.R[p], 1e-4);
  }
  EXPECT_EQ(fit.FitR(1), 6.0);
  EXPECT_EQ(fit.FitY(22), session.At(2).C[0]);
}

TEST(SetupParameterArray, LaysOutTwoComponentsWithLinksHeld) {
  Session session(7);
  session.setup.RefLink = {0, 0, 2};
  session.setup.chkOffset = {CheckState::kChecked, CheckState::kUnchecked, CheckState::kGrey};
  session.setup.chkRefC[0] = CheckState::kUnchecked;
  ConstrainRatios(session.setup);
  session.Assemble();
  const FitState& fit = session.fit;
  EXPECT_EQ(Listed(fit.FitParamNames),
            (std::vector<std::string>{"Offset(1)", "Offset(2)", "Offset(3)", "RefCA(1)", "RefCA(2)",
                                      "RefCA(3)", "RefCB(1)", "RefCB(2)", "RefCB(3)", "MWA", "MWB",
                                      "LnK1", "LnK2"}));
  EXPECT_EQ(Listed(fit.FitIA), (std::vector<std::int16_t>{1, 0, 0, 0, 0, 1, 1, 0, 1, 1, 1, 1, 0}));
  EXPECT_EQ(fit.FitMA, 13);
  EXPECT_EQ(fit.ParamsPerSet, 3);
  EXPECT_TRUE(session.anyFitted);
  EXPECT_TRUE(fit.ConstrainKRatios);
  EXPECT_EQ(fit.FitA(2), session.At(1).Offset);
  EXPECT_DOUBLE_EQ(fit.FitA(5), std::log(session.At(1).RefConc));
  EXPECT_DOUBLE_EQ(fit.FitA(9), std::log(session.At(2).RefConc2));
  EXPECT_EQ(fit.FitA(13), session.page.ModelLnK2);
  EXPECT_DOUBLE_EQ(fit.SetOmegaTerm(3), 40000.0 * 40000.0 * 1.319007e-10 / 293.15);
  EXPECT_EQ(fit.SetEpsA(1), 4.0);
  EXPECT_EQ(fit.SetEpsB(3), 12.0);
  EXPECT_EQ(fit.SetRefRadius(2), session.At(1).RefRadius);
}

TEST(UpdateParameters, WritesResultsBackAndLinkedSetsLikeTheirTargets) {
  Session session(10);
  session.setup.RefLink = {1, 1, 2};
  session.Assemble();
  for (int l = 1; l <= session.fit.FitMA; ++l) session.fit.FitA(l) = 0.1 * l;
  UpdateParameters(session.fit, session.page, session.store.Datasets);
  EXPECT_EQ(session.fit.CurrentProc, "Unknown");
  EXPECT_EQ(session.fit.FitA(4), session.fit.FitA(5));
  EXPECT_EQ(session.fit.FitA(7), session.fit.FitA(8));
  for (std::size_t position = 0; position < 3; ++position) {
    const double d = position == 0 ? 2.0 : static_cast<double>(position) + 1.0;
    const Dataset& dataset = session.At(position);
    EXPECT_DOUBLE_EQ(dataset.Offset, 0.1 * (static_cast<double>(position) + 1.0));
    EXPECT_DOUBLE_EQ(dataset.RefConc, std::exp(0.1 * (3.0 + d)));
    EXPECT_DOUBLE_EQ(dataset.RefConc2, std::exp(0.1 * (6.0 + d)));
  }
  EXPECT_EQ(session.store.Datasets[0].Offset, 0.001);
  const FitPage& page = session.page;
  EXPECT_EQ((std::vector<double>{page.ModelMW, page.ModelMWB, page.ModelN1, page.ModelLnK1,
                                 page.ModelLnK2}),
            (std::vector<double>{0.1 * 10, 0.1 * 11, 0.1 * 12, 0.1 * 13, 0.1 * 14}));
  EXPECT_EQ(page.ModelLnK3, FitPage().ModelLnK3);
}

TEST(UpdateParameters, OverflowChangesNothing) {
  Session session(0);
  session.Assemble();
  session.fit.FitA = Array1<double>(session.fit.FitMA, 0.5);
  session.fit.FitA(6) = 710.0;
  EXPECT_THROW(UpdateParameters(session.fit, session.page, session.store.Datasets),
               ArithmeticFault);
  EXPECT_EQ(session.fit.CurrentProc, "UpdateParameters");
  EXPECT_EQ(session.At(0).Offset, 0.002);
  EXPECT_EQ(session.page.ModelMW, FitPage().ModelMW);
}

TEST(SetupFit, TakesAtMost101Datasets) {
  Session session(0);
  session.store.Datasets.resize(101, MakeDataset(1));
  session.store.UseData.assign(101, true);
  EXPECT_TRUE(SetupFit(session.setup, session.page, session.store, *FindModel(0), session.host));
  EXPECT_EQ(session.setup.NumFitSets, 101);
  session.store.Datasets.push_back(MakeDataset(1));
  session.store.UseData.push_back(true);
  EXPECT_THROW(SetupFit(session.setup, session.page, session.store, *FindModel(0), session.host),
               SubscriptFault);
}

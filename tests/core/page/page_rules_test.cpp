// Faults caught here: a rule of the page that lets a value, link, choice or blank through, stores
// one that it refused, or words its refusal in another way.
#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "core/page/all_rows.h"
#include "core/page/confidence_level.h"
#include "core/page/constants.h"
#include "core/page/dataset_rules.h"
#include "core/page/kept_range.h"
#include "core/page/row_choices.h"
#include "core/page/row_values.h"
#include "core/page/shared_values.h"
#include "fit/models.h"
#include "support/recording_host.h"
#include "support/session.h"

using namespace quorvane;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
const std::string kAboveZero = "Illegal Value Entered: it must be greater than 0";
const std::string kUsed = "This set is currently being used as a link";

// Three samples in the rows of a page, and a blank.
class PageRules : public testing::Test {
 protected:
  void SetUp() override {
    const auto flat = [](double, double) { return 0.5; };
    for (int k = 0; k < 3; ++k) AddScan(module, {}, flat);
    AddScan(module, {.name = "BL_made.dat"}, flat);
    module.Store.UseData[3] = false;
    UseModel(8);
  }

  void UseModel(int index) {
    ASSERT_TRUE(SetupFit(setup, page, module.Store, *FindModel(index), host));
  }

  QuorvaneModule module;
  FitSetup& setup = module.Setup;
  FitPage& page = module.FitPage;
  Dataset& First() { return module.Store.Datasets[0]; }
  RecordingHost host;
};

}  // namespace

TEST_F(PageRules, ValuesOutsideTheirBoundsChangeNothing) {
  using Set = std::function<Refusal(double)>;
  const auto row = [&](const RowValue& value) {
    return Set([&](double x) { return SetValue(value, First(), x); });
  };
  const auto constant = [&](Constant which) {
    return Set([this, which](double x) { return SetConstant(module, which, x); });
  };
  const Set speed = [&](double x) { return SetSpeed(First(), x); };
  const Set temperature = [&](double x) { return SetTemperature(setup, x); };
  const Set weight = [&](double x) { return SetShared(shared::kMW, module, x); };
  const auto stored = [&] {
    std::vector<double> all = {1.0 * First().Speed,
                               setup.DegC,
                               page.ModelMW,
                               page.Vbar,
                               module.Preferences.MCTolerance,
                               page.Density,
                               module.Preferences.CriticalCCCValue};
    for (const RowValue& value : RowValues) all.push_back(First().*value.field);
    return all;
  };
  const std::string illegal = "Illegal Value Entered", out = "Out-of-range Value Entered";
  const struct {
    Set set;
    std::vector<double> taken, refused;
    std::string line;
  } cases[] = {
      {row(row::kRefConc), {1e-300}, {0.0, -1.0}, kAboveZero},
      {row(RowValues[5]), {0.0}, {-1e-9}, "Illegal Value Entered: it must not be negative"},
      {row(RowValues[0]), {-1e300}, {kNaN, kInfinity}, illegal},
      {speed, {0.51, 2147483647.0}, {0.0, -1.0, 0.5, kNaN}, kAboveZero},
      {speed, {1.0}, {3e9, kInfinity}, "Overflow"},
      {temperature, {-300.0}, {kNaN}, illegal},
      {weight, {-1e300}, {kNaN, -kInfinity}, illegal},
      {constant(Constant::kVbar), {0.2501}, {0.25, kNaN, kInfinity}, out},
      {constant(Constant::kDensity), {0.51}, {0.5}, out},
      {constant(Constant::kMCTolerance), {10.0}, {0.0, 10.1}, out},
      {constant(Constant::kCriticalCCC), {0.999}, {0.0, 1.0}, out},
  };
  for (const auto& test : cases) {
    for (const double x : test.taken) EXPECT_FALSE(test.set(x)) << x << test.line;
    const std::vector<double> before = stored();
    for (const double x : test.refused) EXPECT_EQ(LineOf(test.set(x)), test.line) << x;
    EXPECT_EQ(stored(), before) << test.line;
  }
  EXPECT_EQ(First().Speed, 1);
  EXPECT_EQ(module.Preferences.DefaultVbar, 0.2501);
}

TEST_F(PageRules, LevelsLieBetween50And100) {
  for (const double level : {50.0, 100.0, kNaN}) EXPECT_TRUE(RefusalOfLevel(level)) << level;
  EXPECT_FALSE(RefusalOfLevel(99.999));
}

TEST_F(PageRules, LinksAreNeverChained) {
  const std::string illegal = "Illegal Value Entered";
  const struct {
    int row, target;
    std::string line;
    std::vector<std::int16_t> links;
  } steps[] = {{1, 0, "", {0, 0, 2}},       {2, 1, illegal, {0, 0, 2}}, {0, 2, kUsed, {0, 0, 2}},
               {0, 0, "", {0, 0, 2}},       {2, 3, illegal, {0, 0, 2}}, {3, 0, illegal, {0, 0, 2}},
               {-1, 0, illegal, {0, 0, 2}}, {1, 1, "", {0, 1, 2}},      {0, 2, "", {2, 1, 2}}};
  for (const auto& step : steps) {
    EXPECT_EQ(LineOf(LinkRow(setup, step.row, step.target)), step.line) << step.row << step.target;
    EXPECT_EQ(setup.RefLink, step.links) << step.row << step.target;
  }
  EXPECT_TRUE(RefusalOfLinking(setup, 2) && !RefusalOfLinking(setup, 0));
  EXPECT_FALSE(OwnRefConcsOf(setup, 0).a || !OwnRefConcsOf(setup, 2).b);
  // All at once the order does not matter, and links of before do not count.
  const struct {
    std::vector<RowLink> links;
    int refused;  // place of the link that is; -1 if all are taken
  } cases[] = {{{{0, 1}, {1, 2}}, 0}, {{{1, 2}, {0, 1}}, 1},  {{{0, 1}, {1, 0}}, 0},
               {{{2, 3}}, 0},         {{{1, 0}, {2, 0}}, -1}, {{{0, 1}, {1, 1}}, -1}};
  for (const auto& test : cases) {
    const std::vector<std::int16_t> before = setup.RefLink;
    const auto refused = LinkRows(setup, test.links);
    EXPECT_EQ(refused ? static_cast<int>(refused->place) : -1, test.refused);
    EXPECT_EQ(setup.RefLink == before, refused.has_value());
  }
  EXPECT_EQ(setup.RefLink, (std::vector<std::int16_t>{1, 1, 2}));
}

TEST_F(PageRules, GeometriesAreThoseOfTheTable) {
  EXPECT_EQ(SetCellGeometry(module, 0, 1).text, "there is no such cell geometry");
  module.CellGeometries.resize(2);
  EXPECT_TRUE(SetCellGeometry(module, 0, 2) && SetCellGeometry(module, 3, 0));
  EXPECT_FALSE(SetCellGeometry(module, 1, 1, true));
  EXPECT_EQ(setup.SetCellChannel, (std::vector<std::int16_t>{0, 1, 1}));
}

TEST_F(PageRules, ConstrainedRatiosAreAboveZeroAndHeld) {
  page.ModelLnK3 = -24.0;  // of a K, not as a ratio
  EXPECT_EQ(ConstrainStoredRatios(module).text, "the ratios must be greater than 0");
  EXPECT_FALSE(setup.ConstrainKRatios);
  EXPECT_FALSE(SetShared(shared::kLnK3, module, 3.0) || ConstrainStoredRatios(module));
  EXPECT_EQ(SetShared(shared::kLnK3, module, 0.0).text, "K3/K1 must be greater than 0!");
  EXPECT_EQ(SetCheck(shared::kLnK2, setup, true).text, "a constrained ratio is held");
  EXPECT_FALSE(SetCheck(shared::kLnK2, setup, false));
  EXPECT_EQ(setup.chkLnK2, CheckState::kGrey);
  EXPECT_FALSE(SetCheck(shared::kLnK1, setup, false) || SetShared(shared::kLnK1, module, -1.0));
  EXPECT_EQ(page.ModelLnK3, 3.0);
  ConfidenceRequest request;
  EXPECT_EQ(ChooseForSearch(request, setup, "LnK3").text, "LnK3 is held in this fit");
  UseModel(0);
  EXPECT_EQ(ConstrainStoredRatios(module).text, "this model has no K ratios");
  EXPECT_EQ(ConstrainShownRatios(module).text, "this model has no K ratios");
  EXPECT_EQ(ChooseForSearch(request, setup, "LnK1").text, "this model has no \"LnK1\"");
  EXPECT_FALSE(ChooseForSearch(request, setup, "MW"));
  EXPECT_EQ(request.chosen, std::vector<bool>{true});
}

TEST_F(PageRules, BlanksAreSubtractedOnceAndNeitherFittedNorEdited) {
  DatasetStore& store = module.Store;
  EXPECT_EQ(ChooseForFit(store, 3, true).text, "a blank is never fitted");
  EXPECT_FALSE(ChooseForFit(store, 3, false) || store.UseData[3] || ChooseForFit(store, 0, false));
  EXPECT_FALSE(store.UseData[0]);
  EXPECT_EQ(OpenForEditing(store.Datasets[3]).text, "a blank cannot be edited");
  EXPECT_FALSE(OpenForEditing(First()));
  EXPECT_TRUE(First().Edited == 1.0 && store.Datasets[3].Edited == 0.0);
  const double before = First().C[5];
  EXPECT_EQ(TakeOffBlank(store, 0, 1, host).text, "that dataset is no blank");
  EXPECT_EQ(TakeOffBlank(store, 3, 3, host).text, "a blank cannot be blanked");
  EXPECT_TRUE(First().C[5] == before && host.lines.empty());
  EXPECT_FALSE(TakeOffBlank(store, 0, 3, host));
  EXPECT_EQ(First().C[5], 0.0);
  EXPECT_EQ(TakeOffBlank(store, 0, 3, host).text, "a blank was subtracted already");
}

TEST_F(PageRules, OneEntryForAllRowsPassesLinkedOnesOver) {
  module.Store.Datasets[1].RefConc = 0.7;
  EXPECT_FALSE(LinkRow(setup, 1, 0));
  EXPECT_FALSE(EnterInAllRows(row::kRefConc, module, "0.25"));
  EXPECT_EQ(EnterInAllRows(row::kRefConc, module, "0").text, kIllegalValue);
  EXPECT_EQ(EnterInAllRows(row::kRefConc, module, "much").text, kIllegalValue);
  const auto& datasets = module.Store.Datasets;
  EXPECT_EQ(datasets[0].RefConc, 0.25);
  EXPECT_EQ(datasets[1].RefConc, 0.7);
  EXPECT_EQ(datasets[2].RefConc, 0.25);
  EXPECT_EQ(datasets[3].RefConc, EmptyDataset().RefConc);  // not in the fit
  EXPECT_EQ(TextOfAllRows(row::kRefConc, module), "0.2500");
  CheckInAllRows(RowChecks[1], setup, false);
  const CheckState on = CheckState::kChecked, off = CheckState::kUnchecked;
  EXPECT_EQ(setup.chkRefC, (std::vector<CheckState>{off, on, off}));
  EXPECT_EQ(StateOfAllRows(RowChecks[1], setup), off);
  SetCheck(RowChecks[0], setup, 1, false);
  EXPECT_EQ(StateOfAllRows(RowChecks[0], setup), CheckState::kGrey);
  First().Offset = 1.0;
  EXPECT_EQ(TextOfAllRows(RowValues[0], module), std::nullopt);
}

TEST_F(PageRules, ARangeGoesToItsChannelAndLeavesTheRestAlone) {
  DatasetStore& store = module.Store;  // 60 points each, from 6.40 to 6.60
  store.Datasets[0].FileName.SetBytes("1_2A10280.dat");
  store.Datasets[1].FileName.SetBytes("2_2A20280.dat");
  AddScan(module, {.name = "3_2A30280.dat", .first = 6.70, .last = 6.90},
          [](double, double) { return 0.5; });
  RadiusSpan span;
  EXPECT_EQ(LineOf(ParseSpan("6.5", "x", span)),
            "Illegal Value Entered: two radii in cm are wanted");
  EXPECT_EQ(LineOf(ParseSpan("6.5", "6.4", span)),
            "Illegal Value Entered: the first radius must lie below the second");
  EXPECT_FALSE(ParseSpan("6.45", "6.55", span));
  EXPECT_EQ(KeepRangeOf(store, 0, {6.45, 6.46}).text, "fewer than 10 points would be kept");
  EXPECT_EQ(KeepRangeOf(store, 3, span).text, "a blank cannot be edited");
  EXPECT_EQ(RefusalOfSpreading(store, 2, ChannelReach::kAllCells).text,
            "the name of this dataset does not tell its channel, as 12_3B20280.dat does");
  EXPECT_FALSE(KeepRangeOf(store, 0, span));
  EXPECT_FALSE(RefusalOfSpreading(store, 0, ChannelReach::kCellAndChannel));
  const SpreadRange spread = SpreadOverChannel(store, 0, span, ChannelReach::kCellAndChannel);
  EXPECT_EQ(TextOf(spread, 0, span),
            "The range 6.45 to 6.55 cm is kept in 2 datasets: 1, 2. Left alone: 5 (fewer than 10 "
            "points would be kept).");
  EXPECT_EQ(KeptRange(store.Datasets[1]), KeptRange(store.Datasets[0]));
  EXPECT_EQ(CountGoodPoints(store.Datasets[4]), 60);
  EXPECT_EQ(store.Datasets[4].Edited + store.Datasets[2].Edited, 0.0);
  EXPECT_EQ(store.Datasets[1].Edited, 1.0);
  EXPECT_EQ(store.Edits.UndoCommand(store.Datasets), std::vector<int>{1});
  EXPECT_TRUE(store.Edits.CanUndo(store.Datasets[0], 0));
}

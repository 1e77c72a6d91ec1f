// Faults caught here: inside and outside exchanged, an open bound, a state that drifts when an
// action is repeated, and a reference radius left behind.
#include "scan/point_edits.h"

#include <string>

#include <gtest/gtest.h>

#include "scan_samples.h"

using namespace quorvane;

namespace {

using Action = void (*)(Dataset&, const EditRectangle&);

// Points at 6.0, 6.1 ... 6.5 with signals 0 to 5; the second was delivered as deleted.
Dataset Sample() {
  Dataset d = MakeDataset("s", {6.0, 6.1, 6.2, 6.3, 6.4, 6.5}, {0, 1, 2, 3, 4, 5});
  d.Err[1] = -0.01;
  d.Good[1] = kFalse;
  return d;
}

// '+' for a good point, '-' for a deleted one, '?' where Err and Good do not agree.
std::string States(const Dataset& d) {
  std::string states;
  for (std::size_t k = 0; k < static_cast<std::size_t>(d.NumPoints); ++k) {
    const bool good = d.Good[k] == kTrue && d.Err[k] == 0.01;
    const bool deleted = d.Good[k] == kFalse && d.Err[k] == -0.01;
    states += good ? '+' : deleted ? '-' : '?';
  }
  return states;
}

}  // namespace

TEST(PointEdits, ReachThePointsOfTheirSide) {
  const EditRectangle all;
  const EditRectangle middle = {6.2, 0.0, 6.4, 10.0};  // bounds inside
  const EditRectangle low = {6.2, 2.5, 6.4, 10.0};     // the signal counts too
  const EditRectangle start = {6.0, 0.0, 6.1, 10.0};
  const EditRectangle nowhere = {7.0, 0.0, 8.0, 10.0};
  const struct {
    Action action;
    EditRectangle rectangle;
    const char* states;
    double refRadius;  // cm, to 6 decimals
  } cases[] = {
      {DeleteInside, middle, "+----+", 6.333333},   {DeleteInside, low, "+-+--+", 6.333333},
      {DeleteInside, nowhere, "+-++++", 6.333333},  {DeleteInside, all, "------", 0.0},
      {DeleteOutside, middle, "--+++-", 6.333333},  {DeleteOutside, nowhere, "------", 0.0},
      {DeleteOutside, start, "+-----", 6.0},        {DeleteInside, start, "--++++", 6.4},
      {RestoreInside, start, "++++++", 6.333333},   {RestoreInside, middle, "+-++++", 6.333333},
      {RestoreOutside, middle, "++++++", 6.333333}, {RestoreOutside, all, "+-++++", 6.333333}};
  for (const auto& c : cases) {
    Dataset d = Sample();
    d.RefRadius = 1.0;
    for (int round = 0; round < 2; ++round) {  // twice is as good as once
      c.action(d, c.rectangle);
      EXPECT_EQ(States(d), c.states);
      EXPECT_NEAR(d.RefRadius, c.refRadius, 1e-6) << c.states;
    }
    EXPECT_TRUE(d.R == Sample().R && d.C == Sample().C);
  }
}

// A wider range brings back what it takes in, and not what was struck out inside the old one.
TEST(PointEdits, ARangeIsKept) {
  Dataset d = Sample();  // "+-++++"
  const struct {
    RadiusSpan span;
    const char* states;
  } steps[] = {{{6.0, 6.4}, "+-+++-"}, {{6.2, 6.3}, "--++--"}, {{6.1, 6.3}, "-+++--"},
               {{5.0, 7.0}, "++++++"}, {{7.0, 8.0}, "------"}, {{6.1, 6.2}, "-++---"}};
  for (const auto& [span, states] : steps) {
    const int kept = CountKept(d, span);
    KeepRange(d, span);
    EXPECT_EQ(States(d), states);
    EXPECT_EQ(CountGoodPoints(d), kept) << states;
    EXPECT_EQ(d.RefRadius, CalcRefRadius(d));
  }
  EXPECT_EQ(KeptRange(d), (RadiusSpan{6.1, 6.2}));
  KeepRange(d, {7.0, 8.0});
  EXPECT_FALSE(KeptRange(d));
}

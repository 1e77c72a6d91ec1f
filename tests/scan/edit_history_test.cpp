// Faults caught here: a step that brings old values over newer ones, an undone edit that comes back
// after another was made, a reference radius left behind.
#include "scan/edit_history.h"

#include <string>

#include <gtest/gtest.h>

#include "scan/point_edits.h"
#include "scan_samples.h"

using namespace quorvane;

namespace {

// The fourth point was delivered as deleted.
Dataset Sample() {
  Dataset d = MakeDataset("s", {6.0, 6.1, 6.2, 6.3}, {0, 1, 2, 3});
  RestoreAll(d);
  DeleteInside(d, {6.25, 0.0, 6.4, 9.0});
  return d;
}

std::string States(const Dataset& d) {
  std::string states;
  for (std::size_t k = 0; k < 4; ++k) {
    states += (d.Good[k] == kTrue) != (d.Err[k] > 0.0) ? '?' : d.Good[k] == kTrue ? '+' : '-';
  }
  return states;
}

}  // namespace

TEST(EditHistory, StepsThroughTheEditsOfADataset) {
  EditHistory history;
  Dataset d = Sample();
  const double radius = d.RefRadius;
  const struct {
    char step;  // 1 deletes the first point, 2 the second, r restores all, u and y step
    const char* states;
    const char* offered;
  } steps[] = {{'1', "-++-", "u"},  {'1', "-++-", "u"},  {'2', "--+-", "u"}, {'u', "-++-", "uy"},
               {'r', "++++", "u"},  {'u', "-++-", "uy"}, {'u', "+++-", "y"}, {'u', "+++-", "y"},
               {'y', "-++-", "uy"}, {'y', "++++", "u"},  {'y', "++++", "u"}};
  for (const auto& [step, states, offered] : steps) {
    const double x = step == '1' ? 6.0 : 6.1;
    const auto erase = [x](Dataset& edited) { DeleteInside(edited, {x, 0.0, x, 9.0}); };
    if (step == 'u') {
      history.Undo(d, 0);
    } else if (step == 'y') {
      history.Redo(d, 0);
    } else if (step == 'r') {
      history.Apply(d, 0, RestoreAll);
    } else {
      history.Apply(d, 0, erase);
    }
    EXPECT_EQ(States(d), states) << step;
    EXPECT_EQ(std::string(history.CanUndo(d, 0) ? "u" : "") + (history.CanRedo(d, 0) ? "y" : ""),
              offered)
        << step;
    if (std::string(states) == "+++-") {
      EXPECT_EQ(d.RefRadius, radius);
    }
  }
}

TEST(EditHistory, LeavesWhatWasTypedSince) {
  EditHistory history;
  Dataset d = Sample();
  history.Apply(d, 0, [](Dataset& edited) { DeleteInside(edited, {6.0, 0.0, 6.0, 9.0}); });
  history.Apply(d, 0, [](Dataset& edited) { SetMeniscusAndBase(edited, 5.9, 6.4); });
  d.Rmen = 5.95;
  history.Undo(d, 0);  // the points: the ends were typed since
  EXPECT_EQ(States(d), "+++-");
  EXPECT_EQ(d.Rmen, 5.95);
  EXPECT_FALSE(history.CanUndo(d, 0));
}

TEST(EditHistory, ACommandOnManyIsTakenBackWhereItCameLast) {
  EditHistory history;
  std::vector<Dataset> all(4, Sample());
  const auto erase = [](double x) {
    return [x](Dataset& edited) { DeleteInside(edited, {x, 0.0, x, 9.0}); };
  };
  erase(6.0)(all[3]);
  EXPECT_FALSE(history.CanUndoCommand(all));
  const std::vector<int> aims = {0, 2, 3};
  EXPECT_EQ(history.ApplyToMany(all, aims, erase(6.0)), (std::vector<int>{0, 2}));
  EXPECT_FALSE(history.CanUndo(all[3], 3));
  history.Apply(all[2], 2, erase(6.1));
  EXPECT_EQ(history.UndoCommand(all), std::vector<int>{0});  // 2 was edited since
  EXPECT_EQ(States(all[0]) + States(all[2]), "+++---+-");
  EXPECT_FALSE(history.CanUndoCommand(all));
  history.Redo(all[0], 0);  // each by itself
  history.Undo(all[2], 2);
  all.erase(all.begin() + 1);
  history.Forget(1);
  EXPECT_EQ(history.UndoCommand(all), (std::vector<int>{0, 1}));
  EXPECT_EQ(States(all[0]) + States(all[1]) + States(all[2]), "+++-+++--++-");
}

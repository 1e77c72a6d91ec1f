// Faults caught here: a list that does not follow the store, checks that wander to other datasets,
// a zoom lost with every check, curves without a fit.
#include <QCheckBox>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

#include "plot/chart_widget.h"
#include "windows/main_window_fixture.h"

using namespace quorvane;

namespace {

class OverlayTest : public MainWindowTest {
 protected:
  void Open() {
    SetUpExample();
    Trigger("mnuOverlay");
    list = Find<QListWidget>("lisOverlay");
    chart = Find<ChartWidget>("teeOverlay");
  }
  std::size_t Series() const { return chart->GetChart().panels.at(0).series.size(); }

  QListWidget* list = nullptr;
  ChartWidget* chart = nullptr;
};

TEST_F(OverlayTest, DrawsTheCheckedDatasets) {
  EXPECT_FALSE(Find<QAction>("mnuOverlay")->isEnabled());
  Open();
  ASSERT_EQ(list->count(), session.Module.Store.NumDatasets());
  EXPECT_EQ(Series(), static_cast<std::size_t>(list->count()));
  Click("cmdOverlayNone");
  EXPECT_EQ(Series(), 0U);
  EXPECT_FALSE(Find<QPushButton>("cmdOverlayExport")->isEnabled());
  list->item(1)->setCheckState(Qt::Checked);
  list->item(2)->setCheckState(Qt::Checked);
  EXPECT_EQ(chart->GetChart().panels[0].series[0].name, NameOf(session.Module.Store.Datasets[1]));
  chart->ZoomTo({6.4, 0.0, 6.5, 1.0});
  list->item(2)->setCheckState(Qt::Unchecked);
  EXPECT_EQ(chart->BottomRange().low, 6.4);
  Click("optOverlay(1)");
  EXPECT_LT(chart->BottomRange().high, 2.0);  // of the new abscissa, in full
  EXPECT_EQ(chart->GetChart().bottomTitle, "(R^2-R0^2)/2 (cm^2)");
}

TEST_F(OverlayTest, FollowsTheStoreAndTheFit) {
  Open();
  auto* curves = Find<QCheckBox>("chkOverlayCurves");
  EXPECT_FALSE(curves->isEnabled());
  Click("cmdFitMe");
  const auto sets = static_cast<std::size_t>(list->count());
  curves->click();
  EXPECT_EQ(Series(), 2 * sets);
  list->item(0)->setCheckState(Qt::Unchecked);
  list->item(1)->setCheckState(Qt::Unchecked);
  Click("cmdRemoveData(0)");
  EXPECT_EQ(static_cast<std::size_t>(list->count()), sets - 1);
  EXPECT_EQ(list->item(0)->checkState(), Qt::Unchecked);
  EXPECT_EQ(list->item(1)->checkState(), Qt::Checked);
  EXPECT_EQ(Series(), 2 * (sets - 2));
  dialogs.yesNo = {true};
  Trigger("mnuFileNew");
  EXPECT_FALSE(Find<QWidget>("frmOverlay")->isVisible());
  EXPECT_FALSE(Find<QAction>("mnuOverlay")->isEnabled());
}

}  // namespace

// Faults caught here: an entry for all rows that reaches some, or linked ones; gestures and keys of
// the parameter page that reach the wrong rows, links in chains, a focus that gets lost.
#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QLabel>
#include <QScrollBar>
#include <QSignalSpy>

#include "windows/page/fit_control_tab_fixture.h"

using namespace quorvane;

TEST_F(FitControlTabTest, CtrlCopiesToTheRowsBelow) {
  SetUp(6, 4);
  Find<QLineEdit>("txtExtCoeff(1)")->setText("2.000004");
  Click("txtExtCoeff(1)", Qt::ControlModifier);
  EXPECT_NE(Scan(0).ExtCoeff, 2.000004);
  EXPECT_EQ(Scan(1).ExtCoeff, 2.000004);
  EXPECT_EQ(Scan(3).ExtCoeff, 2.000004);
  EXPECT_EQ(Text("txtExtCoeff(3)"), "2.0000");
  Find<QLineEdit>("txtRefConc(2)")->setText("0");
  Click("txtRefConc(2)", Qt::ControlModifier);
  EXPECT_EQ(dialogs.messages.size(), 1u);
  Click("chkRefC(2)", Qt::ControlModifier);
  const CheckState on = CheckState::kChecked, off = CheckState::kUnchecked;
  EXPECT_EQ(setup.chkRefC, (std::vector<CheckState>{on, on, off, off}));
  EXPECT_FALSE(Find<QCheckBox>("chkRefC(3)")->isChecked());
  Find<QLineEdit>("txtExtCoeff(0)")->setText("3");  // typed, and not yet stored
  Click("txtOffset(0)", Qt::ControlModifier);
  EXPECT_EQ(Scan(0).ExtCoeff, 3.0);
}

TEST_F(FitControlTabTest, OneLineSpeaksForAllRows) {
  SetUp(6, 4);
  EXPECT_EQ(Find<QLineEdit>("txtAllRefConc")->placeholderText(), "0.5000");
  Type("txtLinkTo(2)", "1");
  Type("txtAllRefConc", "0.25");
  EXPECT_EQ(Text("txtAllRefConc"), "");
  EXPECT_EQ(Find<QLineEdit>("txtAllRefConc")->placeholderText(), "0.2500");
  EXPECT_EQ(Text("txtRefConc(3)"), "0.2500");
  EXPECT_EQ(Scan(2).RefConc, 0.5);
  Type("txtAllRefConc", "-1");
  EXPECT_EQ(LastMessage(), "Illegal Value Entered");
  EXPECT_EQ(dialogs.messages.size(), 1u);
  EXPECT_EQ(Scan(0).RefConc, 0.25);
  Type("txtOffset(1)", "0.01");
  EXPECT_EQ(Find<QLineEdit>("txtAllOffset")->placeholderText(), "differ");
  Click("chkOffset(1)");
  auto* all = Find<QCheckBox>("chkAllOffset");
  EXPECT_EQ(all->checkState(), Qt::PartiallyChecked);
  Click("chkAllOffset");
  EXPECT_EQ(setup.chkOffset, std::vector<CheckState>(4, CheckState::kChecked));
  Click("chkAllOffset");
  EXPECT_EQ(setup.chkOffset, std::vector<CheckState>(4, CheckState::kUnchecked));
  EXPECT_FALSE(Find<QCheckBox>("chkOffset(3)")->isChecked());
  Find<QLineEdit>("txtAllExtCoeff2")->setText("7");  // typed, and not yet stored
  EXPECT_TRUE(tab.CommitPending());
  EXPECT_EQ(Scan(3).ExtCoeff2, 7.0);
  EXPECT_EQ(Find("txtAllExtCoeff2")->accessibleName(), "Ext.Coef.B of all rows");
  for (const char* name : {"RefConc", "ExtCoeff2"}) {  // over the columns of the rows
    const auto place = [&](const std::string& box) {
      return QRect(Find(box)->mapToGlobal(QPoint()), Find(box)->size());
    };
    EXPECT_TRUE(QTest::qWaitFor([&] {
      const QRect above = place(std::string("txtAll") + name);
      const QRect below = place(std::string("txt") + name + "(0)");
      return above.left() == below.left() && above.right() == below.right();
    })) << name;
  }
  EXPECT_FALSE(Find("txtAllALoad")->isVisible());
  QWidget* last = Find("txtAllExtCoeff2");
  tab.resize(400, tab.height());
  last->setFocus();
  EXPECT_TRUE(QTest::qWaitFor([&] {  // comes into sight
    return last->x() >= 0 && last->geometry().right() < last->parentWidget()->width();
  }));
  session.Module.Store.UseData = {true, false, false, false};
  ASSERT_TRUE(tab.SetupFit(*FindModel(0)));
  EXPECT_FALSE(Find("txtAllRefConc")->isVisible());  // one row needs no such line
}

TEST_F(FitControlTabTest, LinksAreNeverChained) {
  SetUp(6, 3);
  Click("txtLinkTo(1)", {}, Qt::RightButton);
  EXPECT_EQ(Entries("mnuLinkTo"), "++++");
  Choose("mnuLinkTo", "mnuLinkToSet(0)");
  EXPECT_EQ(setup.RefLink, (std::vector<std::int16_t>{0, 0, 2}));
  EXPECT_EQ(Text("txtLinkTo(1)"), "1");
  EXPECT_FALSE(Find("txtRefConc(1)")->isEnabled() || Find("txtRefConc2(1)")->isEnabled());
  Click("txtLinkTo(0)", {}, Qt::RightButton);
  EXPECT_EQ(LastMessage(), "This set is currently being used as a link");
  Click("txtLinkTo(2)", {}, Qt::RightButton);
  EXPECT_EQ(Entries("mnuLinkTo"), "+-++");
  Choose("mnuLinkTo", "mnuCancelLink");
  Type("txtLinkTo(1)", "2");
  EXPECT_TRUE(Find("txtRefConc(1)")->isEnabled());
}

TEST_F(FitControlTabTest, TheDisplayIsChosenWhereItIsSeen) {
  SetUp(6, 1);
  const QSignalSpy forK(&tab, &FitControlTab::KDisplayChosen);
  const QSignalSpy forWeights(&tab, &FitControlTab::MwDisplayChosen);
  Find<QLineEdit>("txtLnK1")->setText("3");
  Click("txtLnK1", {}, Qt::RightButton);
  EXPECT_EQ(Entries("mnuKDisplay"), "*++");
  Choose("mnuKDisplay", "popmnuDispLogK");
  EXPECT_EQ(page.ModelLnK1, 3.0);  // stored before it could be read as log K
  emit Find<QLabel>("lblMWB2")->customContextMenuRequested({});
  EXPECT_EQ(Entries("mnuMWDisplay"), "+*");
  Choose("mnuMWDisplay", "popmnuDispMW");
  EXPECT_EQ(forK.value(0), QVariantList{QVariant::fromValue(KDisplay::kLog10)});
  EXPECT_EQ(forWeights.value(0), QVariantList{false});
}

TEST_F(FitControlTabTest, CellGeometryIsChosenByShiftAndCtrl) {
  session.Module.CellGeometries = {{1, " sector ", {}, {}}, {2, "band", {}, {}}, {3, "x", {}, {}}};
  SetUp(0, 3);
  EXPECT_FALSE(Find("lblFitNum(1)")->isEnabled());
  Click("chkCalcConcs");
  EXPECT_TRUE(Find("lblFitNum(1)")->isEnabled());
  EXPECT_FALSE(Find("lblFitNum(1)")->toolTip().isEmpty());
  Click("lblFitNum(1)");
  EXPECT_EQ(tab.findChild<QMenu*>("mnuOptionCellGeom"), nullptr);
  Click("lblFitNum(1)", Qt::ControlModifier);
  EXPECT_EQ(Entries("mnuOptionCellGeom"), "*++");
  EXPECT_EQ(Find<QAction>("mnuCellGeom(0)")->text(), "sector");
  Choose("mnuOptionCellGeom", "mnuCellGeom(1)");
  Click("lblFitNum(1)", Qt::ShiftModifier);
  Choose("mnuOptionCellGeom", "mnuCellGeom(2)");
  EXPECT_EQ(setup.SetCellChannel, (std::vector<std::int16_t>{0, 2, 1}));
}

TEST_F(FitControlTabTest, FocusGoesRowByRowThenThroughTheBlock) {
  SetUp(0, 2);
  auto* first = Find<QLineEdit>("lblRunSpeed(0)");
  Scan(0).RefConc = 0.123456789;
  tab.ShowValues();
  first->setFocus();
  QStringList order;
  for (int k = 0; k < 15; ++k) {
    order += QApplication::focusWidget()->objectName();
    EXPECT_EQ(Find("Shape1")->isVisible(), order.last().startsWith("chk"));
    if (order.last().startsWith("chk")) {
      const QRect box = QApplication::focusWidget()->geometry();
      EXPECT_EQ(Find("Shape1")->geometry(),
                QRect(box.x() - 2, box.y() - 1, box.width() + 4, box.height() + 2));
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCoreApplication::processEvents();
  }
  const QString row =
      "lblRunSpeed(%1) txtOffset(%1) chkOffset(%1) txtRefConc(%1) chkRefC(%1) "
      "txtExtCoeff(%1) ";
  EXPECT_EQ(order.join(' '), row.arg(0) + row.arg(1) + "txtMWB chkMWB lblDegC");
  EXPECT_EQ(Scan(0).RefConc, 0.123456789);  // passing through a box does not round its value
}

TEST_F(FitControlTabTest, KeysDoWhatTheButtonsOfTheMouseDo) {
  session.Module.CellGeometries = {{1, "sector", {}, {}}, {2, "band", {}, {}}};
  SetUp(7, 3);
  Click("chkUseMC");
  const auto press = [](QWidget* control, int key, Qt::KeyboardModifiers modifiers = {}) {
    control->setFocus();
    QTest::keyClick(control, static_cast<Qt::Key>(key), modifiers);
    QCoreApplication::processEvents();
  };
  const auto pressMenuKey = [](QWidget* control) {
    const QPoint center = control->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, center, control->mapToGlobal(center));
    QCoreApplication::sendEvent(control, &event);
  };
  press(Find("chkOffset(1)"), Qt::Key_Space, Qt::ControlModifier);
  EXPECT_EQ(setup.chkOffset,
            (std::vector{CheckState::kChecked, CheckState::kUnchecked, CheckState::kUnchecked}));
  Find<QLineEdit>("txtRefConc(1)")->setText("0.25");
  press(Find("txtRefConc(1)"), Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Scan(0).RefConc, 0.5);
  EXPECT_EQ(Scan(2).RefConc, 0.25);
  const QSignalSpy adjustments(&tab, &FitControlTab::RefConcRequested);
  pressMenuKey(Find("txtRefConc(1)"));
  EXPECT_EQ(adjustments.count(), 1);
  pressMenuKey(Find("txtLinkTo(1)"));
  EXPECT_EQ(Entries("mnuLinkTo"), "++++");
  Choose("mnuLinkTo", "mnuLinkToSet(2)");
  EXPECT_EQ(Text("txtLinkTo(1)"), "3");
  pressMenuKey(Find("txtLnK1"));
  EXPECT_EQ(Entries("mnuKDisplay"), "*++");
  Find<QMenu>("mnuKDisplay")->close();
  press(Find("lblFitNum(1)"), Qt::Key_Space, Qt::ControlModifier);
  Choose("mnuOptionCellGeom", "mnuCellGeom(1)");
  EXPECT_EQ(setup.SetCellChannel, (std::vector<std::int16_t>{0, 1, 1}));
}

TEST_F(FitControlTabTest, ArrowsGoToTheNextRowThatHasTheControl) {
  SetUp(6, 60);
  Type("txtLinkTo(1)", "1");
  struct Case {
    const char* from;
    Qt::Key key;
    const char* to;
  };
  const std::vector<Case> cases = {{"txtRefConc(0)", Qt::Key_Down, "txtRefConc(2)"},
                                   {"chkOffset(2)", Qt::Key_Up, "chkOffset(1)"},
                                   {"txtOffset(0)", Qt::Key_Up, "txtOffset(0)"},
                                   {"txtRefConc(59)", Qt::Key_Down, "txtRefConc(59)"}};
  for (const Case& c : cases) {
    Find(c.from)->setFocus();
    QTest::keyClick(Find(c.from), c.key);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), c.to) << c.from;
  }
  Find("txtOffset(0)")->setFocus();
  for (int k = 0; k < 50; ++k) QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
  EXPECT_EQ(QApplication::focusWidget()->objectName(), "txtOffset(50)");
  EXPECT_FALSE(QApplication::focusWidget()->visibleRegion().isEmpty());
  // A refusal brings a box back that was scrolled away.
  Find<QLineEdit>("txtOffset(50)")->setText("x");
  Find<QScrollBar>("tabVScroll2")->setValue(0);
  Find("txtMWB")->setFocus();
  QCoreApplication::processEvents();
  EXPECT_TRUE(Find("txtOffset(50)")->hasFocus());
  EXPECT_FALSE(Find("txtOffset(50)")->visibleRegion().isEmpty());
}

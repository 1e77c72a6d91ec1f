#include "windows/value_box.h"

#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace {

// Two boxes in an active window; the first takes whole numbers only.
class ValueBoxTest : public testing::Test {
 protected:
  ValueBoxTest() {
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(first = new ValueBox);
    layout->addWidget(second = new ValueBox);
    first->SetStore([this](const QString& text) {
      bool whole = false;
      const int value = text.toInt(&whole);
      if (!whole) {
        ++refusals;
        first->ShowStored(QString::number(stored));
        return false;
      }
      stored = value;
      first->ShowStored(text);
      return true;
    });
    first->ShowStored("7");
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    second->setFocus();
    first->setFocus();
    QCoreApplication::processEvents();
  }

  QWidget window;
  ValueBox* first;
  ValueBox* second;
  int stored = 7;
  int refusals = 0;
};

}  // namespace

TEST_F(ValueBoxTest, StoresOnLeaving) {
  EXPECT_EQ(first->selectedText(), "7");
  QTest::keyClicks(first, "12");
  EXPECT_EQ(stored, 7);
  QTest::keyClick(first, Qt::Key_Tab);
  QCoreApplication::processEvents();
  EXPECT_EQ(stored, 12);
  EXPECT_TRUE(second->hasFocus());
}

TEST_F(ValueBoxTest, KeepsTheFocusOnARefusal) {
  QTest::keyClicks(first, "x");
  QTest::keyClick(first, Qt::Key_Tab);
  QCoreApplication::processEvents();
  EXPECT_EQ(refusals, 1);
  EXPECT_TRUE(first->hasFocus());
  EXPECT_EQ(first->text(), "7");
  QTest::keyClick(first, Qt::Key_Tab);
  QCoreApplication::processEvents();
  EXPECT_TRUE(second->hasFocus());
}

TEST_F(ValueBoxTest, CtrlClickFollowsTheStore) {
  const QSignalSpy clicks(first, &ValueBox::CtrlClicked);
  first->setText("9");
  QTest::mouseClick(first, Qt::LeftButton, Qt::ControlModifier);
  EXPECT_EQ(stored, 9);
  EXPECT_EQ(clicks.count(), 1);
  first->setText("x");
  QTest::mouseClick(first, Qt::LeftButton, Qt::ControlModifier);
  EXPECT_EQ(clicks.count(), 1);
}

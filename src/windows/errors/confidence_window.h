// frmConfInterval: which confidence intervals are searched, and how.
#pragma once

#include <QDialog>
#include <array>

#include "stats/confidence.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QPushButton;
class QRadioButton;
class QWidget;

namespace quorvane {

class ValueBox;
struct Session;

class ConfidenceWindow : public QDialog {
  Q_OBJECT
 public:
  // Shows the shared parameters of the finished fit of `session`, which outlives the window.
  explicit ConfidenceWindow(Session& session, QWidget* parent = nullptr);

 signals:
  // cmdCalcCI, with the choices of the window.
  void CalculateRequested(const ConfidenceRequest& request);

 private:
  static constexpr int kRows = 8;

  void BuildWidgets();
  QWidget* BuildLevel();
  QWidget* BuildParameters();
  void ConnectSignals();
  void ShowRows();
  void ShowLevel();
  void ShowMeaning();
  bool StoreLevel(const QString& text);
  void Calculate();

  Session& session_;
  QComboBox* cmbFStat_;
  ValueBox* txtConfPercent_;
  std::array<QRadioButton*, 2> optVRmethod_{};
  std::array<QLabel*, kRows> names_{};
  std::array<QLabel*, kRows> values_{};
  std::array<QCheckBox*, kRows> chkParam_{};
  QLabel* lblMeaning_;
  QPushButton* cmdCalcCI_;
  QPushButton* cmdClose_;
};

}  // namespace quorvane

// What is planned: the left side of frmPlan.
#pragma once

#include <QWidget>
#include <array>
#include <optional>

#include "sim/plan.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QGroupBox;
class QLabel;
class QLayout;
class QLineEdit;
class QSpinBox;

namespace quorvane {

class PlanEntries : public QWidget {
  Q_OBJECT
 public:
  explicit PlanEntries(QWidget* parent = nullptr);

  // Shows a plan in all boxes.
  void ShowPlan(const ExperimentPlan& plan);

  // Shows speeds that were chosen among the candidates; these come back when they are asked for
  // again.
  void TakeChoice(const std::vector<double>& speeds);

  // What is entered; nothing, with Refusal() saying why, if it breaks a rule.
  std::optional<ExperimentPlan> Plan();
  const QString& Refusal() const { return refusal_; }

 signals:
  void Changed();  // by the user

 private:
  // The value of a shared parameter, and whether the fit looks for it.
  struct Row {
    QLabel* label = nullptr;
    QLineEdit* value = nullptr;
    QCheckBox* fitted = nullptr;
    QLayout* both = nullptr;  // value and check box
  };

  QGroupBox* BuildSample();
  QGroupBox* BuildRun();
  QGroupBox* BuildCell();
  void AddRow(std::size_t place);
  void AlignLabels();
  QLineEdit* AddBox(QFormLayout& form, const char* name, const QString& label, const QString& tip);
  void ShowModel();
  void ShowChoices();
  void OfferAgain(bool choose);
  void ReadSample(ExperimentPlan& plan);
  void ReadRun(ExperimentPlan& plan);
  void ReadCell(ExperimentPlan& plan);
  double Number(const QLineEdit& box);
  std::vector<double> Numbers(const QLineEdit& box);
  void Refuse(const QLineEdit& box, const QString& why);

  QString refusal_;
  bool showing_ = false;  // a plan is being shown: no change by the user
  QString candidates_;    // that `chosen_` were taken from
  QString chosen_;
  QComboBox* cmbModel_;
  std::array<Row, SharedParameters.size()> rows_;
  QLineEdit* txtVbar_;
  QLineEdit* txtDensity_;
  QLineEdit* txtTemperature_;
  QLineEdit* txtSpeeds_;
  QCheckBox* chkChoose_;
  QSpinBox* spnChoose_;
  QLineEdit* txtLoads_;
  QLineEdit* txtLoadsB_;
  QLineEdit* txtExtCoeff_;
  QLineEdit* txtExtCoeffB_;
  QLineEdit* txtNoise_;
  QLineEdit* txtMostSignal_;
  QComboBox* cmbCell_;
  QLineEdit* txtMeniscus_;
  QLineEdit* txtBase_;
  QSpinBox* spnPoints_;
  QFormLayout* sample_ = nullptr;
  QFormLayout* run_ = nullptr;
  QFormLayout* cell_ = nullptr;
};

}  // namespace quorvane

// frmSimSeries: scans of all combinations of speeds and loads, simulated at once.
#pragma once

#include <QDialog>
#include <array>
#include <filesystem>

#include "sim/sim_series.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QTableWidget;

namespace quorvane {

class Host;
struct Session;

class SeriesWindow : public QDialog {
  Q_OBJECT
 public:
  // `inputs`: all that the scans have in common. Session and host outlive it.
  SeriesWindow(Session& session, Host& host, SimInputs inputs, QWidget* parent = nullptr);

  // Shows lists that come from elsewhere.
  void ShowLists(const SeriesLists& lists);

  // Not while the scans are being made.
  void done(int result) override;

 signals:
  // Scan files were written; those of `load` are to be loaded.
  void Written(const QStringList& files, bool load);

 private:
  void BuildWidgets();
  void BuildFoot(QLayout& layout);
  void ConnectSignals();
  void ShowPlan();
  void FillRow(int row, const SeriesScan& scan);
  void ChooseFolder();
  bool MayReplace();
  void Run(bool load);
  // Why nothing was written; empty if all was.
  QString Make();

  Session& session_;
  Host& host_;
  SimInputs inputs_;
  SeriesPlan plan_;
  std::filesystem::path folder_;
  bool running_ = false;
  std::array<QLineEdit*, 3> lists_{};  // speeds, loads of A and of B
  QSpinBox* spnSeed_;
  QTableWidget* gridSeries_;
  QLabel* lblSeries_;
  QLabel* lblFolder_;
  QPushButton* cmdFolder_;
  QPushButton* cmdMake_;
  QPushButton* cmdMakeLoad_;
};

}  // namespace quorvane

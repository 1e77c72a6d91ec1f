// The tab "Load Files" of the match window: which scans to take, and those taken.
#pragma once

#include <QWidget>
#include <array>
#include <filesystem>
#include <vector>

#include "match/match_series.h"
#include "windows/session/session.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace quorvane {

class MatchLoadTab : public QWidget {
  Q_OBJECT
 public:
  explicit MatchLoadTab(Session& session, QWidget* parent = nullptr);  // outlived by `session`

  // Asks for the scans to load; none on a cancel.
  std::vector<std::filesystem::path> ChooseFiles();

  MatchLoadSettings Settings() const;

  void ShowSeries(const MatchSeries& series);

  // Where dialogs start: the folder of the loaded files; before a load the session's.
  QString Folder() const;

 signals:
  void LoadRequested();

 private:
  void BuildWidgets();
  QGroupBox* BuildOptionBox();
  QGroupBox* BuildCellBox();
  QGroupBox* BuildFilterBox();
  void ConnectSignals();
  std::size_t ChosenFilter() const;

  Session& session_;
  QCheckBox* chkLoadByN_;
  QSpinBox* updownLoadByN_;
  QComboBox* cmbCellNum_;
  QSpinBox* updownCellNumber_;
  std::array<QRadioButton*, 5> optFileFilter_;
  QPushButton* cmdLoadFiles_;
  QLineEdit* txtMatchDir_;
  QListWidget* lisMatchFiles_;
};

}  // namespace quorvane

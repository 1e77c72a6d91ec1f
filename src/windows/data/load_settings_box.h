// How scans are loaded: file type, centerpiece and channels, as the session has them.
#pragma once

#include <QWidget>
#include <array>

#include "scan/loading.h"
#include "windows/session/session.h"

class QCheckBox;
class QGroupBox;
class QRadioButton;

namespace quorvane {

// Keeps session.Module.LoadSettings as the boxes stand.
class LoadSettingsBox : public QWidget {
  Q_OBJECT
 public:
  explicit LoadSettingsBox(Session& session, QWidget* parent = nullptr);  // outlived by `session`

  // The settings of the session into the boxes.
  void ShowSettings();

  // "IP,RA, 6 channels, A B C"
  QString SettingsText() const;

  // Whether every file is to be listed, whatever its name.
  bool AllFiles() const;

 signals:
  void KindChanged();
  void CenterpieceChanged();
  void ChannelsChanged();
  void AllFilesToggled();
  void SettingsChanged();  // any of them; the session has it

 private:
  QGroupBox* BuildKindBox();
  QGroupBox* BuildCenterpieceBox();
  void ConnectSignals();
  void ChangeKind();
  void ChangeCenterpiece();
  void KeepSettings();
  ScanLoadSettings Shown() const;

  Session& session_;
  std::array<QRadioButton*, 4> optFileType_;
  QCheckBox* chkAllFiles_;
  std::array<QRadioButton*, 3> optCntrpiece_;
  std::array<QCheckBox*, kMaxChannels> chkChannel_;
};

}  // namespace quorvane

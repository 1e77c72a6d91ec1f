// Writes a chart to a picture file, its numbers to a table, or copies it.
#pragma once

#include <QDialog>
#include <QImage>

#include "base/chart.h"
#include "windows/graphs/export_size.h"
#include "windows/session/session.h"

class QCheckBox;
class QComboBox;
class QPushButton;
class QSpinBox;

namespace quorvane {

// Shows the picture as it will be, as large as there is room for it.
class PicturePreview : public QWidget {
  Q_OBJECT
 public:
  explicit PicturePreview(QWidget* parent = nullptr) : QWidget(parent) {}
  void SetPicture(const QImage& picture);
  QSize sizeHint() const override { return {480, 432}; }
  QSize minimumSizeHint() const override { return {200, 180}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QImage picture_;
};

class ExportDialog : public QDialog {
  Q_OBJECT
 public:
  // `name` is what a file is called at first, such as "Graph 1". `session` outlives the dialog.
  ExportDialog(Session& session, Chart chart, QString name, QWidget* parent = nullptr);

 private:
  void BuildWidgets();
  QWidget* BuildOptions();
  void ConnectSignals();
  void TakeFormat();  // shows the unit and the standard size of the format
  void TakeWidth();
  void TakeHeight();
  void ShowPreview();
  void SavePicture();
  void SaveNumbers();
  void CopyPicture();

  PictureFormat Format() const;
  PictureSize EnteredSize() const;
  PictureSize Size() const;
  void SetSize(PictureSize size);

  // Asks for a file and writes what `content` makes; the dialog closes when that is done.
  template <class Content>
  void Save(const QString& filter, const QString& suffix, Content content);
  void ShowFailure(const std::exception& fault);

  Session& session_;
  Chart chart_;
  QString name_;
  PictureSize shape_;  // the proportion that is kept
  QComboBox* cboFormat_;
  QSpinBox* txtWidth_;
  QSpinBox* txtHeight_;
  QCheckBox* chkProportion_;
  PicturePreview* preview_;
  QPushButton* cmdSave_;
  QPushButton* cmdCopy_;
  QPushButton* cmdNumbers_;
  QPushButton* cmdClose_;
};

}  // namespace quorvane

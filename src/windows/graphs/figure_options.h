// What can be chosen about a figure, but for its datasets.
#pragma once

#include <QWidget>

#include "base/picture_format.h"
#include "fit/fit_figure.h"
#include "plot/figure_export.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QGroupBox;
class QLineEdit;
class QRadioButton;
class QSpinBox;
class QTableWidget;

namespace quorvane {

// How a figure is written.
struct FigureFile {
  PictureFormat format = PictureFormat::kPdf;
  int dpi = 300;  // of a PNG
};

// Three pages for a tab widget, which share one state.
class FigureOptions : public QObject {
  Q_OBJECT
 public:
  explicit FigureOptions(QObject* parent = nullptr);

  QWidget* ShownParts() const { return parts_; }  // check boxes, to stand below the datasets
  QWidget* LayoutPage() const { return layout_; }
  QWidget* TextsPage() const { return texts_; }
  QComboBox* Formats() const { return cmbFormat_; }

  FigureChoices Choices() const;
  FigureFile File() const;

  // Shows in its box the height that suits a figure, where none was chosen.
  void ShowHeight(double millimetres);

  // Lists the texts of `figure`, or what the user has put in their place.
  void ListTexts(const Figure& figure);

  // What a fit alone can show may be chosen.
  void SetFitted(bool fitted);

  // Takes the automatic texts and no title, without a signal.
  void ForgetTexts();

  // All choices but texts and height, as one line; what a line does not say stays.
  QString Line() const;
  void TakeLine(const QString& line);

 signals:
  void Changed();
  void AxesChanged();  // then Changed: a zoom has lost its meaning

 private:
  void BuildParts();
  void BuildLayout();
  QWidget* BuildSize();
  void BuildTexts();
  void ConnectSignals();
  void TellAxes();
  void EnableChoices();
  FigureContent Content() const;
  void TakeText(int row);
  void TakeAutomaticTexts();

  std::map<std::string, std::string> replaced_;
  std::vector<std::string> listed_;
  QWidget* parts_;
  QWidget* layout_;
  QWidget* texts_;
  QCheckBox* chkCurves_;
  QCheckBox* chkResiduals_;
  QCheckBox* chkLeftOut_;
  QCheckBox* chkSpecies_;
  bool fitted_ = false;
  QComboBox* cmbContent_;
  QSpinBox* txtWindow_;
  QSpinBox* txtEvery_;
  QComboBox* cmbPanels_;
  QComboBox* cmbSignal_;
  QComboBox* cmbLooks_;
  QGroupBox* against_;
  QRadioButton* radius_;
  QRadioButton* psi_;
  QComboBox* cmbWidth_;
  QDoubleSpinBox* txtWidth_;
  QCheckBox* chkHeight_;
  QDoubleSpinBox* txtHeight_;
  QComboBox* cmbFormat_;
  QLineEdit* txtTitle_;
  QTableWidget* gridTexts_;
};

}  // namespace quorvane

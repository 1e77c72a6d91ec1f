#include "windows/page/fit_row.h"

#include <QGridLayout>

#include "core/page/row_choices.h"
#include "windows/controls/control_names.h"
#include "windows/controls/dataset_tip.h"
#include "windows/controls/page_controls.h"
#include "windows/controls/value_box.h"

namespace quorvane {

namespace {

struct BoxPlace {
  RowColumn column;
  const char* toolTip;
};

constexpr const char* kRefConcTip =
    QT_TRANSLATE_NOOP("QObject", "Conc. at a point 2/3rds down the solution column");
constexpr const char* kExtCoeffTip =
    QT_TRANSLATE_NOOP("QObject", "Extinction coefficient in signal units/mole");
constexpr const char* kCheckTip = QT_TRANSLATE_NOOP("QObject", "Check to Fit Parameter");

// Where the boxes of RowValues stand, in that order.
constexpr std::array<BoxPlace, RowValues.size()> kBoxPlaces = {{
    {kOffsetColumn, QT_TRANSLATE_NOOP("QObject", "Baseline in signal units")},
    {kRefConcColumn, kRefConcTip},
    {kRefConc2Column, kRefConcTip},
    {kExtCoeffColumn, kExtCoeffTip},
    {kExtCoeff2Column, kExtCoeffTip},
    {kMeniscusColumn, QT_TRANSLATE_NOOP("QObject", "Loading concentration of A")},
    {kBaseColumn, QT_TRANSLATE_NOOP("QObject", "Loading concentration of B")},
    {kMeniscusColumn,
     QT_TRANSLATE_NOOP("QObject", "enter the value for the radius of the meniscus")},
    {kBaseColumn, QT_TRANSLATE_NOOP("QObject", "enter the value for the radius of the base")},
}};

// Places of boxes in FitRow::boxes.
enum BoxIndex {
  kOffset,
  kRefConc,
  kRefConc2,
  kExtCoeff,
  kExtCoeff2,
  kALoad,
  kBLoad,
  kRmen,
  kRbase
};

// The name by which a screen reader tells the control from those of other rows.
void NameInRow(QWidget& control, const QString& name, int row) {
  control.setAccessibleName(QObject::tr("%1, row %2").arg(name, QString::number(row + 1)));
}

template <class Control>
Control* Place(QGridLayout& grid, int row, RowColumn column, const char* name,
               const char* toolTip) {
  auto* control = new Control(grid.parentWidget());
  control->setObjectName(ElementName(name, row));
  if (toolTip != nullptr) {
    control->setToolTip(QObject::tr(toolTip));
    NameInRow(*control, control->toolTip(), row);
  }
  grid.addWidget(control, row, column);
  return control;
}

}  // namespace

std::vector<QWidget*> FitRow::All() const {
  std::vector<QWidget*> all = {lblFitData, lblLambda};
  for (QWidget* control : InTabOrder()) all.push_back(control);
  return all;
}

std::vector<QWidget*> FitRow::InTabOrder() const {
  return {lblFitNum,     lblRunSpeed,      boxes[kOffset], chkOffset,        boxes[kRefConc],
          chkRefC,       boxes[kRefConc2], chkRefC2,       boxes[kExtCoeff], boxes[kExtCoeff2],
          boxes[kALoad], boxes[kBLoad],    boxes[kRmen],   boxes[kRbase],    txtLinkTo};
}

FitRow MakeFitRow(QGridLayout& grid, int row) {
  FitRow made{};
  made.lblFitNum = Place<ClickLabel>(grid, row, kNumberColumn, "lblFitNum", nullptr);
  made.lblFitNum->setAlignment(Qt::AlignCenter);
  NameInRow(*made.lblFitNum, QObject::tr("Cell geometry"), row);
  made.lblFitData = Place<QLabel>(grid, row, kNameColumn, "lblFitData", nullptr);
  made.lblFitData->setTextFormat(Qt::PlainText);
  made.lblRunSpeed = Place<ValueBox>(grid, row, kSpeedColumn, "lblRunSpeed",
                                     QT_TRANSLATE_NOOP("QObject", "Rotor speed in rpm"));
  made.lblLambda = Place<QLabel>(grid, row, kLambdaColumn, "lblLambda",
                                 QT_TRANSLATE_NOOP("QObject", "Wavelength in nm"));
  made.lblLambda->setAlignment(Qt::AlignCenter);
  for (std::size_t k = 0; k < RowValues.size(); ++k) {
    made.boxes[k] = Place<ValueBox>(grid, row, kBoxPlaces[k].column, RowValues[k].control,
                                    kBoxPlaces[k].toolTip);
    ShapeNumberBox(*made.boxes[k]);
    made.boxes[k]->setMaximumWidth(QWIDGETSIZE_MAX);  // its column takes its share of the row
  }
  made.chkOffset = Place<PageCheckBox>(grid, row, kOffsetCheckColumn, "chkOffset", kCheckTip);
  made.chkRefC = Place<PageCheckBox>(grid, row, kRefConcCheckColumn, "chkRefC", kCheckTip);
  made.chkRefC2 = Place<PageCheckBox>(grid, row, kRefConc2CheckColumn, "chkRefC2", kCheckTip);
  NameInRow(*made.chkOffset, QObject::tr("Fit the baseline"), row);
  NameInRow(*made.chkRefC, QObject::tr("Fit the reference concentration"), row);
  NameInRow(*made.chkRefC2, QObject::tr("Fit the reference concentration of B"), row);
  made.txtLinkTo = Place<ValueBox>(
      grid, row, kLinkColumn, "txtLinkTo",
      QT_TRANSLATE_NOOP("QObject", "Click on RMB to link ref. conc's of this set to another set"));
  for (ValueBox* narrow : {made.lblRunSpeed, made.txtLinkTo}) {
    ShapeNumberBox(*narrow, QStringLiteral("000000"));
    narrow->setMaximumWidth(narrow->minimumWidth());
  }
  return made;
}

void ShowRowParts(const FitRow& controls, const PageParts& parts) {
  const auto show = [](std::initializer_list<QWidget*> some, bool shown, bool enabled) {
    for (QWidget* control : some) {
      control->setEnabled(enabled);
      control->setVisible(shown);
    }
  };
  const auto& boxes = controls.boxes;
  show({boxes[kRefConc2], controls.chkRefC2, boxes[kExtCoeff2]}, parts.componentB,
       parts.componentB);
  show({boxes[kALoad], boxes[kBLoad]}, parts.loads, parts.componentB);
  show({boxes[kRmen], boxes[kRbase]}, parts.cellEnds, true);
  show({controls.txtLinkTo}, parts.links, true);
  controls.lblFitNum->setEnabled(parts.cellGeometry);
  controls.lblFitNum->setFocusPolicy(parts.cellGeometry ? Qt::TabFocus : Qt::NoFocus);
  controls.lblFitNum->setFrameStyle(parts.cellGeometry ? int(QFrame::Panel) | int(QFrame::Raised)
                                                       : int(QFrame::NoFrame));
  controls.lblFitNum->setToolTip(
      parts.cellGeometry ? QObject::tr("Use <Shift>LMB or <Ctrl>LMB to change cell geometry "
                                       "type for a single or multiple datasets")
                         : QString());
}

void ShowRowValues(const FitRow& controls, QuorvaneModule& module, int row) {
  const Dataset& dataset = DatasetOfRow(module, row);
  const FitSetup& setup = module.Setup;
  const auto place = static_cast<std::size_t>(row);
  controls.lblFitNum->setNum(row + 1);
  controls.lblFitData->setText(QString::fromStdString(FitDataText(dataset)));
  controls.lblFitData->setToolTip(DatasetTip(dataset));
  controls.lblRunSpeed->ShowStored(QString::fromStdString(SpeedText(dataset)));
  controls.lblLambda->setNum(dataset.Wavelength);
  for (std::size_t k = 0; k < RowValues.size(); ++k) {
    controls.boxes[k]->ShowStored(QString::fromStdString(TextOf(RowValues[k], dataset)));
  }
  controls.chkOffset->ShowState(setup.chkOffset[place]);
  controls.chkRefC->ShowState(setup.chkRefC[place]);
  controls.chkRefC2->ShowState(setup.chkRefC2[place]);
  ShowRowLink(controls, setup, row);
}

void ShowRowLink(const FitRow& controls, const FitSetup& setup, int row) {
  const OwnRefConcs own = OwnRefConcsOf(setup, row);
  controls.txtLinkTo->ShowStored(QString::fromStdString(LinkText(setup, row)));
  controls.boxes[kRefConc]->setEnabled(own.a);
  controls.chkRefC->setEnabled(own.a);
  controls.boxes[kRefConc2]->setEnabled(own.b);
  controls.chkRefC2->setEnabled(own.b);
}

}  // namespace quorvane

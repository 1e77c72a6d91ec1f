#include "windows/page/row_heads.h"

#include <QGridLayout>
#include <QLabel>
#include <algorithm>
#include <array>

#include "windows/page/fit_row.h"

namespace quorvane {

namespace {

// A head stands over its columns, a box and its check box.
struct Head {
  RowColumn first;
  RowColumn last;
  bool grows;  // with the window
  const char* control;
  const char* caption;
  const char* toolTip;
};

constexpr std::array<Head, 12> kHeads = {{
    {kNumberColumn, kNumberColumn, false, "", QT_TRANSLATE_NOOP("QObject", "No."),
     QT_TRANSLATE_NOOP("QObject", "Position in the fit")},
    {kNameColumn, kNameColumn, true, "", QT_TRANSLATE_NOOP("QObject", "Dataset"),
     QT_TRANSLATE_NOOP("QObject", "Name of the dataset")},
    {kSpeedColumn, kSpeedColumn, false, "", QT_TRANSLATE_NOOP("QObject", "Speed"),
     QT_TRANSLATE_NOOP("QObject", "Rotor speed in rpm")},
    {kLambdaColumn, kLambdaColumn, false, "", QT_TRANSLATE_NOOP("QObject", "nm"),
     QT_TRANSLATE_NOOP("QObject", "Wavelength in nm")},
    {kOffsetColumn, kOffsetCheckColumn, true, "", QT_TRANSLATE_NOOP("QObject", "Baseline"),
     QT_TRANSLATE_NOOP("QObject", "Baseline in signal units")},
    {kRefConcColumn, kRefConcCheckColumn, true, "lblRef", "",
     QT_TRANSLATE_NOOP("QObject", "Signal at the reference radius")},
    {kRefConc2Column, kRefConc2CheckColumn, true, "lblRefB",
     QT_TRANSLATE_NOOP("QObject", "Ref.Conc.B"),
     QT_TRANSLATE_NOOP("QObject", "Signal of B at the reference radius")},
    {kExtCoeffColumn, kExtCoeffColumn, true, "lblExtA", "",
     QT_TRANSLATE_NOOP("QObject", "In signal units/mole")},
    {kExtCoeff2Column, kExtCoeff2Column, true, "lblExtB",
     QT_TRANSLATE_NOOP("QObject", "Ext.Coef.B"),
     QT_TRANSLATE_NOOP("QObject", "In signal units/mole")},
    {kMeniscusColumn, kMeniscusColumn, true, "lblRmen", "", ""},
    {kBaseColumn, kBaseColumn, true, "lblRbase", "", ""},
    {kLinkColumn, kLinkColumn, false, "lblLinkTo", QT_TRANSLATE_NOOP("QObject", "Link To"),
     QT_TRANSLATE_NOOP("QObject",
                       "Number of the dataset whose reference concentrations the row shares")},
}};

QString TextOf(const char* text) {
  return *text == '\0' ? QString() : QObject::tr(text);
}

bool IsShown(const Head& head, const PageParts& parts) {
  switch (head.first) {
    case kRefConc2Column:
    case kExtCoeff2Column:
      return parts.componentB;
    case kMeniscusColumn:
    case kBaseColumn:
      return parts.loads || parts.cellEnds;
    case kLinkColumn:
      return parts.links;
    default:
      return true;
  }
}

}  // namespace

RowHeads::RowHeads(QWidget* parent) : QWidget(parent) {
  for (const Head& head : kHeads) {
    auto* label = new QLabel(TextOf(head.caption), this);
    label->setObjectName(head.control);
    label->setToolTip(TextOf(head.toolTip));
    label->setAlignment(Qt::AlignCenter);
    heads_.push_back(label);
  }
}

QSize RowHeads::sizeHint() const {
  return {0, heads_.front()->sizeHint().height() + fontMetrics().descent()};
}

void RowHeads::Show(const FitSetup& setup, QGridLayout& grid) {
  const auto caption = [&](RowColumn column, const std::string& text) {
    HeadOver(column)->setText(QString::fromStdString(text));
  };
  caption(kRefConcColumn, HeadOfRefConc(setup));
  caption(kExtCoeffColumn, HeadOfExtCoeff(setup));
  caption(kMeniscusColumn, HeadOfRmen(setup));
  caption(kBaseColumn, HeadOfRbase(setup));
  const PageParts parts = PartsOf(setup);
  for (std::size_t k = 0; k < kHeads.size(); ++k) {
    const bool shown = IsShown(kHeads[k], parts);
    heads_[k]->setVisible(shown);
    grid.setColumnMinimumWidth(kHeads[k].first, shown ? heads_[k]->sizeHint().width() : 0);
    grid.setColumnStretch(kHeads[k].first, shown && kHeads[k].grows ? 1 : 0);
  }
}

QLabel* RowHeads::HeadOver(int column) const {
  const auto* head = std::find_if(kHeads.begin(), kHeads.end(), [column](const Head& h) {
    return h.first <= column && column <= h.last;
  });
  if (head == kHeads.end()) return nullptr;
  return heads_[static_cast<std::size_t>(head - kHeads.begin())];
}

QString RowHeads::CaptionOver(const QWidget& control, const QGridLayout& grid) const {
  int row = 0;
  int column = 0;
  int span = 0;
  grid.getItemPosition(grid.indexOf(&control), &row, &column, &span, &span);
  const QLabel* head = HeadOver(column);
  return head == nullptr ? QString() : head->text();
}

void RowHeads::Place(const QGridLayout& grid, int offset) {
  for (std::size_t k = 0; k < kHeads.size(); ++k) {
    const QRect columns =
        grid.cellRect(0, kHeads[k].first).united(grid.cellRect(0, kHeads[k].last));
    heads_[k]->setGeometry(columns.x() + offset, 0, columns.width(), height());
  }
}

}  // namespace quorvane

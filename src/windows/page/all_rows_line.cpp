#include "windows/page/all_rows_line.h"

#include <QGridLayout>
#include <QLabel>

#include "core/page/all_rows.h"
#include "windows/controls/control_names.h"
#include "windows/controls/page_controls.h"
#include "windows/controls/value_box.h"
#include "windows/page/row_heads.h"
#include "windows/session/box_entry.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

// "txtOffset" of a row is "txtAllOffset" here.
QString AllName(const char* control) {
  const QString name = QString::fromLatin1(control);
  return name.left(3) + QStringLiteral("All") + name.mid(3);
}

// The control of `row` that is below that of a value or check.
QWidget* Below(const FitRow& row, const RowValue& value) {
  return row.boxes[static_cast<std::size_t>(&value - RowValues.data())];
}

QWidget* Below(const FitRow& row, const RowCheck& check) {
  const std::array boxes = {row.chkOffset, row.chkRefC, row.chkRefC2};
  return boxes[static_cast<std::size_t>(&check - RowChecks.data())];
}

}  // namespace

AllRowsLine::AllRowsLine(Session& session, FocusMarker& marker, const RowHeads& heads,
                         QWidget* parent)
    : QWidget(parent), session_(session), heads_(heads), lblAllRows_(new QLabel(this)) {
  lblAllRows_->setObjectName("lblAllRows");
  lblAllRows_->setText(tr("All rows"));
  lblAllRows_->setToolTip(
      tr("An entry in this line goes into every row. Linked rows have the "
         "reference concentrations of their target."));
  for (const RowValue& value : RowValues) {
    if (value.spreads) AddBox(value);
  }
  for (const RowCheck& check : RowChecks) AddCheck(check, marker);
}

void AllRowsLine::AddBox(const RowValue& value) {
  auto* box = Named(new ValueBox(this), AllName(value.control));
  box->setAlignment(Qt::AlignRight);
  boxes_.push_back({&value, box});
  BindEntry(*box, session_,
            {.enter =
                 [this, &value](const std::string& text) {
                   if (!RowsAreCurrent(session_.Module)) return Refusal();
                   Refusal refusal = EnterInAllRows(value, session_.Module, text);
                   if (!refusal) emit Entered();
                   return refusal;
                 },
             .shown = [] { return std::string(); },
             .name = [box] { return box->accessibleName(); },
             .taken = [&value] { return TakenBy(value); }});
}

void AllRowsLine::AddCheck(const RowCheck& check, FocusMarker& marker) {
  constexpr std::array<const char*, RowChecks.size()> kNames = {"chkAllOffset", "chkAllRefC",
                                                                "chkAllRefC2"};
  constexpr std::array<const char*, RowChecks.size()> kFitted = {
      QT_TRANSLATE_NOOP("QObject", "Fit the baselines of all rows"),
      QT_TRANSLATE_NOOP("QObject", "Fit the reference concentrations of all rows"),
      QT_TRANSLATE_NOOP("QObject", "Fit the reference concentrations of B of all rows")};
  const auto place = static_cast<std::size_t>(&check - RowChecks.data());
  auto* box = Named(new PageCheckBox(this), kNames[place]);
  box->setToolTip(QObject::tr(kFitted[place]));
  box->setAccessibleName(box->toolTip());
  marker.Watch(box);
  checks_.push_back({&check, box});
  connect(box, &PageCheckBox::clicked, this, [this, &check](bool on) {
    CheckInAllRows(check, session_.Module.Setup, on);
    emit Entered();
  });
}

QSize AllRowsLine::sizeHint() const {
  return {0, boxes_.front().box->sizeHint().height() + fontMetrics().descent()};
}

void AllRowsLine::ShowValues() {
  if (!RowsAreCurrent(session_.Module)) return;
  for (const auto& [value, box] : boxes_) {
    const std::optional<std::string> text = TextOfAllRows(*value, session_.Module);
    box->setPlaceholderText(text ? QString::fromStdString(*text) : tr("differ"));
  }
  for (const auto& [check, box] : checks_) {
    box->ShowState(StateOfAllRows(*check, session_.Module.Setup));
  }
}

void AllRowsLine::Place(const FitRow& first, const QGridLayout& grid, int offset) {
  const int height = first.lblRunSpeed->height();
  const auto place = [offset, height](QWidget& control, const QWidget& below) {
    control.setVisible(below.isVisibleTo(below.parentWidget()));
    control.setGeometry(below.x() + offset, (height - below.height()) / 2, below.width(),
                        below.height());
  };
  for (const auto& [value, box] : boxes_) {
    place(*box, *Below(first, *value));
    const QString name = tr("%1 of all rows").arg(heads_.CaptionOver(*Below(first, *value), grid));
    box->setAccessibleName(name);
    box->setToolTip(tr("%1; grey: what they have").arg(name));
  }
  for (const auto& [check, box] : checks_) place(*box, *Below(first, *check));
  const int left = first.lblFitNum->x() + offset;
  lblAllRows_->setGeometry(left, 0, first.lblRunSpeed->x() + offset - left, height);
}

std::vector<QWidget*> AllRowsLine::InTabOrder() const {
  std::vector<QWidget*> order;
  for (const auto& [value, box] : boxes_) {
    order.push_back(box);
    for (const auto& [check, checkBox] : checks_) {
      if (check->name == std::string("fit_") + value->name) order.push_back(checkBox);
    }
  }
  return order;
}

}  // namespace quorvane

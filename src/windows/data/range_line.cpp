#include "windows/data/range_line.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "windows/controls/control_names.h"

namespace quorvane {

RangeLine::RangeLine(QWidget* parent) : QWidget(parent) {
  BuildWidgets();
  for (QLineEdit* box : {txtKeepFrom_, txtKeepTo_}) {
    box->installEventFilter(this);
    connect(box, &QLineEdit::returnPressed, this, &RangeLine::KeepRequested);
  }
}

void RangeLine::BuildWidgets() {
  txtKeepFrom_ = MakeBox("txtKeepFrom", tr("Smallest radius to keep, cm"));
  txtKeepTo_ = MakeBox("txtKeepTo", tr("Largest radius to keep, cm"));
  cmdKeepRange_ = MakeButton("cmdKeepRange", tr("Keep"),
                             tr("Delete the points outside these radii, and restore those that a "
                                "wider range takes in (Enter in a box)"),
                             &RangeLine::KeepRequested);
  cmdSameChannel_ = MakeButton("cmdSameChannel", tr("Same Channel"),
                               tr("Keep this range in all datasets of the same cell and channel"),
                               &RangeLine::SameChannelRequested);
  cmdUndoSameChannel_ = MakeButton(
      "cmdUndoSameChannel", tr("Undo Same Channel"),
      tr("Take the last \"Same Channel\" back in all datasets that were not edited since"),
      &RangeLine::UndoSameChannelRequested);
  chkAllCells_ = Named(new QCheckBox(tr("All Cells")), "chkAllCells");
  chkAllCells_->setToolTip(tr("\"Same Channel\" takes the channel of this letter in every cell"));
  auto* from = new QLabel(tr("Keep from"));
  from->setBuddy(txtKeepFrom_);
  auto* to = new QLabel(tr("to"));
  to->setBuddy(txtKeepTo_);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  for (QWidget* part :
       std::initializer_list<QWidget*>{from, txtKeepFrom_, to, txtKeepTo_, new QLabel(tr("cm")),
                                       cmdKeepRange_, cmdSameChannel_, chkAllCells_}) {
    layout->addWidget(part);
  }
  layout->addStretch();
  layout->addWidget(cmdUndoSameChannel_);
}

QPushButton* RangeLine::MakeButton(const char* name, const QString& caption, const QString& toolTip,
                                   void (RangeLine::*requested)()) {
  auto* button = Named(new QPushButton(caption), name);
  button->setToolTip(toolTip);
  connect(button, &QPushButton::clicked, this, requested);
  return button;
}

QLineEdit* RangeLine::MakeBox(const char* name, const QString& toolTip) {
  auto* box = Named(new QLineEdit, name);
  box->setToolTip(toolTip);
  box->setAccessibleName(toolTip);
  box->setAlignment(Qt::AlignRight);
  box->setFixedWidth(fontMetrics().horizontalAdvance("00.0000") + 2 * fontMetrics().height());
  return box;
}

bool RangeLine::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::ShortcutOverride || IsChanged()) {
    return QWidget::eventFilter(watched, event);
  }
  const auto* key = static_cast<QKeyEvent*>(event);
  return key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo) ||
         key->keyCombination() == (Qt::CTRL | Qt::Key_Y);
}

void RangeLine::ShowKept(const std::optional<RadiusSpan>& kept) {
  if (kept == kept_) return;
  kept_ = kept;
  shown_ = kept.value_or(RadiusSpan{});
  fromText_ = kept ? QString::fromStdString(BoundText(kept->low)) : QString();
  toText_ = kept ? QString::fromStdString(BoundText(kept->high)) : QString();
  txtKeepFrom_->setText(fromText_);
  txtKeepTo_->setText(toText_);
}

void RangeLine::Forget() {
  ShowKept({});
  txtKeepFrom_->clear();  // what was typed for the dataset that goes
  txtKeepTo_->clear();
}

bool RangeLine::IsChanged() const {
  return txtKeepFrom_->text() != fromText_ || txtKeepTo_->text() != toText_;
}

Refusal RangeLine::Read(RadiusSpan& span) const {
  Refusal refusal =
      ParseSpan(txtKeepFrom_->text().toStdString(), txtKeepTo_->text().toStdString(), span);
  if (refusal) return refusal;
  if (txtKeepFrom_->text() == fromText_) span.low = shown_.low;
  if (txtKeepTo_->text() == toText_) span.high = shown_.high;
  return {};
}

void RangeLine::Take(const RadiusSpan& span, const std::optional<RadiusSpan>& kept) {
  shown_ = span;
  kept_ = kept;
  fromText_ = txtKeepFrom_->text();
  toText_ = txtKeepTo_->text();
}

ChannelReach RangeLine::Reach() const {
  return chkAllCells_->isChecked() ? ChannelReach::kAllCells : ChannelReach::kCellAndChannel;
}

void RangeLine::FocusBounds() {
  txtKeepFrom_->setFocus();
  txtKeepFrom_->selectAll();
}

void RangeLine::SetAvailable(bool editable, bool undo) {
  for (QWidget* control : std::initializer_list<QWidget*>{txtKeepFrom_, txtKeepTo_, cmdKeepRange_,
                                                          cmdSameChannel_, chkAllCells_}) {
    control->setEnabled(editable);
  }
  cmdUndoSameChannel_->setEnabled(undo);
}

}  // namespace quorvane

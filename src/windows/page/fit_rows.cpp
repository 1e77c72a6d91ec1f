#include "windows/page/fit_rows.h"

#include <QEvent>
#include <QGridLayout>
#include <QScrollBar>

#include "core/page/row_choices.h"
#include "windows/controls/control_names.h"
#include "windows/controls/dataset_tip.h"
#include "windows/controls/page_controls.h"
#include "windows/controls/row_keys.h"
#include "windows/controls/value_box.h"
#include "windows/page/all_rows_line.h"
#include "windows/page/row_heads.h"
#include "windows/session/box_entry.h"
#include "windows/session/session.h"

namespace quorvane {

FitRows::FitRows(Session& session, FocusMarker& marker, QWidget* parent)
    : QScrollArea(parent),
      session_(session),
      marker_(marker),
      content_(new QWidget),
      grid_(new QGridLayout(content_)),
      heads_(new RowHeads(this)),
      all_(new AllRowsLine(session, marker, *heads_, this)),
      keys_(new RowKeys(*this)) {
  setFocusPolicy(Qt::NoFocus);
  setWidgetResizable(true);
  verticalScrollBar()->setObjectName("tabVScroll2");
  horizontalScrollBar()->setObjectName("tabHScroll2");
  grid_->setContentsMargins(4, 2, 4, 2);
  grid_->setVerticalSpacing(2);
  grid_->setHorizontalSpacing(4);
  setMinimumHeight(7 * fontMetrics().height());
  all_->hide();
  ReserveHeads();
  content_->installEventFilter(this);
  setWidget(content_);
  for (QWidget* control : all_->InTabOrder()) control->installEventFilter(this);
  connect(all_, &AllRowsLine::Entered, this, &FitRows::ShowValues);
  connect(horizontalScrollBar(), &QScrollBar::valueChanged, this, &FitRows::PlaceHeads);
}

void FitRows::Rebuild() {
  const auto wanted = static_cast<std::size_t>(session_.Module.Setup.NumFitSets);
  // Hidden, the many new controls are laid out and shown once instead of one by one.
  content_->hide();
  while (rows_.size() > wanted) RemoveLastRow();
  while (rows_.size() < wanted) AddRow();
  all_->setVisible(wanted > 1);  // one row needs no line to speak for it
  ReserveHeads();
  ChainTabOrder();
  ShowParts();
  ShowValues();
  content_->show();
  verticalScrollBar()->setValue(0);
}

bool FitRows::AreCurrent() const {
  return rows_.size() == session_.Module.Setup.FitSetList.size() && RowsAreCurrent(session_.Module);
}

void FitRows::ShowValues() {
  if (!AreCurrent()) return;
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    ShowRowValues(rows_[row], session_.Module, static_cast<int>(row));
  }
  all_->ShowValues();
}

void FitRows::ShowRow(int row) {
  if (!AreCurrent()) return;
  ShowRowValues(rows_[static_cast<std::size_t>(row)], session_.Module, row);
  all_->ShowValues();
}

bool FitRows::CommitRows() {
  for (const FitRow& row : rows_) {
    for (QWidget* control : row.All()) {
      auto* box = qobject_cast<ValueBox*>(control);
      if (box != nullptr && !box->Commit()) return false;
    }
  }
  return true;
}

void FitRows::ShowParts() {
  const FitSetup& setup = session_.Module.Setup;
  const PageParts parts = PartsOf(setup);
  for (const FitRow& row : rows_) ShowRowParts(row, parts);
  if (AreCurrent()) {
    for (std::size_t row = 0; row < rows_.size(); ++row) {
      ShowRowLink(rows_[row], setup, static_cast<int>(row));
    }
  }
  heads_->Show(setup, *grid_);
  PlaceHeads();
}

// The room over the rows that does not scroll with them.
void FitRows::ReserveHeads() {
  const int line = all_->isVisibleTo(this) ? all_->sizeHint().height() : 0;
  setViewportMargins(0, heads_->sizeHint().height() + line, 0, 0);
}

void FitRows::PlaceHeads() {
  const QRect view = viewport()->geometry();
  const int top = view.y() - viewportMargins().top();
  const int height = heads_->sizeHint().height();
  heads_->setGeometry(view.x(), top, view.width(), height);
  heads_->Place(*grid_, content_->x());
  if (rows_.empty()) return;
  all_->setGeometry(view.x(), top + height, view.width(), all_->sizeHint().height());
  all_->Place(rows_.front(), *grid_, content_->x());
}

void FitRows::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  PlaceHeads();
}

bool FitRows::eventFilter(QObject* watched, QEvent* event) {
  // The columns are known once the grid has been laid out, which its resize or request brings.
  if (watched == content_ &&
      (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest)) {
    QMetaObject::invokeMethod(this, &FitRows::PlaceHeads, Qt::QueuedConnection);
  }
  if (event->type() == QEvent::FocusIn && watched != content_) {
    ShowColumn(qobject_cast<QWidget*>(watched)->geometry());
  }
  return QScrollArea::eventFilter(watched, event);
}

// Scrolls sideways to a control of the line over the rows, which stand where they were.
void FitRows::ShowColumn(const QRect& control) {
  const QPoint middle(control.center().x() - content_->x(),
                      viewport()->height() / 2 - content_->y());
  ensureVisible(middle.x(), middle.y(), control.width(), 0);
}

void FitRows::AddRow() {
  const int row = static_cast<int>(rows_.size());
  rows_.push_back(MakeFitRow(*grid_, row));
  keys_->AddRow(rows_.back().InTabOrder());
  grid_->setRowStretch(row, 0);
  grid_->setRowStretch(row + 1, 1);
  ConnectBoxes(row);
  ConnectChecks(row);
  ConnectLink(row);
  connect(rows_.back().lblFitNum, &ClickLabel::Clicked, this,
          [this, row](Qt::KeyboardModifiers modifiers) { AskGeometry(row, modifiers); });
}

void FitRows::RemoveLastRow() {
  grid_->setRowStretch(static_cast<int>(rows_.size()), 0);
  keys_->RemoveLastRow();
  for (QWidget* control : rows_.back().All()) delete control;
  rows_.pop_back();
  grid_->setRowStretch(static_cast<int>(rows_.size()), 1);
}

// A text that is left over from a page whose datasets are gone is dropped.
void FitRows::BindRow(ValueBox& box, int row,
                      std::function<Refusal(Dataset&, const std::string&)> enter,
                      std::function<std::string(const Dataset&)> shown, std::string taken) {
  QuorvaneModule& module = session_.Module;
  BindEntry(box, session_,
            {.enter =
                 [this, &module, row, enter = std::move(enter)](const std::string& text) {
                   if (!AreCurrent()) return Refusal();
                   Refusal refusal = enter(DatasetOfRow(module, row), text);
                   all_->ShowValues();
                   return refusal;
                 },
             .shown =
                 [this, &module, row, shown = std::move(shown)] {
                   return AreCurrent() ? shown(DatasetOfRow(module, row)) : std::string();
                 },
             .name = [this, &box, row] { return NameOfBox(box, row); },
             .taken = [taken = std::move(taken)] { return taken; }});
}

// "Baseline of row 2": the head of its column, and the number of its row.
QString FitRows::NameOfBox(QWidget& box, int row) const {
  return tr("%1 of row %2").arg(heads_->CaptionOver(box, *grid_)).arg(row + 1);
}

void FitRows::ConnectBoxes(int row) {
  const FitRow& controls = rows_.back();
  BindRow(*controls.lblRunSpeed, row, EnterSpeed, SpeedText, kTakesAboveZero);
  for (std::size_t k = 0; k < RowValues.size(); ++k) {
    const RowValue& value = RowValues[k];
    ValueBox& box = *controls.boxes[k];
    BindRow(
        box, row,
        [&value](Dataset& dataset, const std::string& text) { return Enter(value, dataset, text); },
        [&value](const Dataset& dataset) { return TextOf(value, dataset); }, TakenBy(value));
    if (value.spreads) {
      connect(&box, &ValueBox::CtrlClicked, this, [this, &value, row] {
        if (!CommitRows())
          return;  // a box left by this very click may not have stored its text yet
        CopyToRowsBelow(value, session_.Module, row);
        ShowValues();
      });
    }
    if (&value == &row::kRefConc || &value == &row::kRefConc2) ConnectRefConc(box, row);
  }
}

void FitRows::ConnectRefConc(ValueBox& box, int row) {
  const auto request = [this, &box, row] {
    if (box.Commit()) emit RefConcRequested(row);
  };
  connect(&box, &ValueBox::RightReleased, this, request);
  connect(&box, &ValueBox::DoubleClicked, this, request);
}

void FitRows::ConnectChecks(int row) {
  const FitRow& controls = rows_.back();
  const std::array boxes = {controls.chkOffset, controls.chkRefC, controls.chkRefC2};
  for (std::size_t k = 0; k < RowChecks.size(); ++k) ConnectCheck(*boxes[k], RowChecks[k], row);
}

void FitRows::ConnectCheck(PageCheckBox& box, const RowCheck& check, int row) {
  marker_.Watch(&box);
  connect(&box, &PageCheckBox::clicked, this, [this, &check, row](bool on) {
    SetCheck(check, session_.Module.Setup, row, on);
    all_->ShowValues();
  });
  connect(&box, &PageCheckBox::CtrlReleased, this, [this, &check, row] {
    CopyToRowsBelow(session_.Module.Setup.*check.states, row);
    if (CommitRows()) ShowValues();
  });
}

void FitRows::ConnectLink(int row) {
  FitSetup& setup = session_.Module.Setup;
  ValueBox& box = *rows_.back().txtLinkTo;
  BindRow(
      box, row,
      [this, &setup, row](Dataset&, const std::string& text) {
        Refusal refusal = EnterLink(setup, row, text);
        ShowRowLink(rows_[static_cast<std::size_t>(row)], setup, row);
        return refusal;
      },
      [&setup, row](const Dataset&) { return LinkText(setup, row); },
      tr("the number of a row that is not linked itself").toStdString());
  connect(&box, &ValueBox::RightReleased, this, [this, row] { AskLink(row); });
}

void FitRows::ChainTabOrder() {
  QWidget* previous = nullptr;
  for (QWidget* control : all_->InTabOrder()) {
    if (previous != nullptr) setTabOrder(previous, control);
    previous = control;
  }
  for (const FitRow& row : rows_) {
    for (QWidget* control : row.InTabOrder()) {
      if (previous != nullptr) setTabOrder(previous, control);
      previous = control;
    }
  }
}

QWidget* FitRows::LastInTabOrder() const {
  return rows_.empty() ? nullptr : rows_.back().InTabOrder().back();
}

void FitRows::SetContentEnabled(bool on) {
  content_->setEnabled(on);
  all_->setEnabled(on);
}

void FitRows::AskLink(int row) {
  ValueBox* box = rows_[static_cast<std::size_t>(row)].txtLinkTo;
  if (!box->Commit()) return;
  box->selectAll();
  const FitSetup& setup = session_.Module.Setup;
  if (const Refusal refusal = RefusalOfLinking(setup, row)) {
    session_.Ask.ShowMessage(window(), "", QString::fromStdString(refusal.text),
                             MessageIcon::kNone);
    return;
  }
  QMenu* menu = MakePopup("mnuLinkTo", tr("LinkMenu"), this);
  menu->setToolTipsVisible(true);
  for (int target = 0; target < setup.NumFitSets; ++target) {
    const Dataset& dataset = DatasetOfRow(session_.Module, target);
    const std::string name = FitDataText(dataset);
    QAction* entry = menu->addAction(QStringLiteral("%1  %2")
                                         .arg(target + 1)
                                         .arg(QString::fromStdString(name).replace('&', "&&")));
    entry->setObjectName(ElementName("mnuLinkToSet", target));
    entry->setToolTip(DatasetTip(dataset));
    entry->setEnabled(MayLinkTo(setup, row, target));
    connect(entry, &QAction::triggered, this, [this, row, target] { Link(row, target); });
  }
  AddCancel(menu, "mnuCancelLink");
  menu->popup(box->mapToGlobal(box->rect().bottomLeft()));
}

void FitRows::Link(int row, int target) {
  TellEntryError(session_, window(), LinkRow(session_.Module.Setup, row, target));
  ShowRowLink(rows_[static_cast<std::size_t>(row)], session_.Module.Setup, row);
  all_->ShowValues();
}

void FitRows::AskGeometry(int row, Qt::KeyboardModifiers modifiers) {
  const bool below = modifiers.testFlag(Qt::ControlModifier);
  if (!below && !modifiers.testFlag(Qt::ShiftModifier)) return;
  QuorvaneModule& module = session_.Module;
  QMenu* menu = MakePopup("mnuOptionCellGeom", tr("Cell Geometry"), this);
  int geometry = 0;
  for (const std::string& name : CellGeometryNames(module)) {
    QAction* entry = menu->addAction(QString::fromStdString(name).replace('&', "&&"));
    entry->setObjectName(ElementName("mnuCellGeom", geometry));
    entry->setCheckable(true);
    entry->setChecked(module.Setup.SetCellChannel[static_cast<std::size_t>(row)] == geometry);
    connect(entry, &QAction::triggered, this, [this, &module, row, geometry, below] {
      TellEntryError(session_, window(), SetCellGeometry(module, row, geometry, below));
    });
    ++geometry;
  }
  QWidget* number = rows_[static_cast<std::size_t>(row)].lblFitNum;
  menu->popup(number->mapToGlobal(number->rect().bottomLeft()));
}

}  // namespace quorvane

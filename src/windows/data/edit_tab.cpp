#include "windows/data/edit_tab.h"

#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/host.h"
#include "core/page/dataset_rules.h"
#include "core/page/kept_range.h"
#include "plot/point_chart.h"
#include "scan/point_plot.h"
#include "windows/controls/control_names.h"
#include "windows/controls/push_button.h"
#include "windows/data/dataset_strip.h"
#include "windows/data/range_line.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

// A menu whose entries answer to their keys while it is open.
class KeyMenu : public QMenu {
 public:
  using QMenu::QMenu;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const QKeySequence pressed(event->keyCombination());
    for (QAction* entry : actions()) {
      if (!entry->isEnabled() || entry->shortcut().isEmpty() || entry->shortcut() != pressed) {
        continue;
      }
      close();
      entry->trigger();
      return;
    }
    QMenu::keyPressEvent(event);
  }
};

}  // namespace

EditTab::EditTab(Session& session, SessionHost& host, QWidget* parent)
    : QWidget(parent), session_(session), host_(host) {
  BuildWidgets();
  BuildMenu();
  ConnectSignals();
  Clear();
}

void EditTab::BuildWidgets() {
  editTChart_ = Named(new PointChart, "editTChart");
  cmdSetMenBase_ = MakeButton("cmdSetMenBase", tr("Set Meniscus/Base"),
                              tr("Click after setting meniscus and base positions using "
                                 "<Shift><LMB> while dragging green lines for the meniscus and "
                                 "base"));
  cmdRestoreAll_ =
      MakeButton("cmdRestoreAll", tr("Restore All"), tr("Click to restore all deleted points"));
  cmdZoomOut_ = MakeButton("cmdZoomOut", tr("Zoom Out"), tr("Click to zoom out the plot"));
  cmdUndoEdit_ =
      MakeButton("cmdUndoEdit", tr("Undo"), tr("Take the last edit of this dataset back (Ctrl+Z)"));
  cmdRedoEdit_ = MakeButton("cmdRedoEdit", tr("Redo"), tr("Do again what was taken back (Ctrl+Y)"));
  auto* buttons = new QHBoxLayout;
  for (QPushButton* button : {cmdSetMenBase_, cmdRestoreAll_, cmdZoomOut_}) {
    buttons->addWidget(button);
  }
  buttons->addStretch();
  buttons->addWidget(cmdUndoEdit_);
  buttons->addWidget(cmdRedoEdit_);
  auto* layout = new QVBoxLayout(this);
  range_ = new RangeLine;
  layout->addWidget(editTChart_, 1);
  layout->addLayout(buttons);
  layout->addWidget(range_);
  layout->addWidget(places_ = BuildPlaces());
}

// Which dataset is shown, the way to its neighbours, and the strip of all.
QWidget* EditTab::BuildPlaces() {
  lblEditPlace_ = Named(new QLabel, "lblEditPlace");
  lblEditPlace_->setAlignment(Qt::AlignCenter);
  lblEditPlace_->setAccessibleName(tr("Dataset shown"));
  cmdPrevDataset_ = MakeButton("cmdPrevDataset", tr("Previous"),
                               tr("Open the dataset before this one (Ctrl+Page Up)"));
  cmdNextDataset_ =
      MakeButton("cmdNextDataset", tr("Next"), tr("Open the next dataset (Ctrl+Page Down)"));
  strip_ = Named(new DatasetStrip(session_), "lstDatasets");
  auto* steps = new QVBoxLayout;
  steps->addStretch();
  for (QWidget* part :
       std::initializer_list<QWidget*>{lblEditPlace_, cmdPrevDataset_, cmdNextDataset_}) {
    steps->addWidget(part);
  }
  steps->addStretch();
  auto* places = new QWidget;
  auto* layout = new QHBoxLayout(places);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(steps);
  layout->addWidget(strip_, 1);
  return places;
}

void EditTab::BuildMenu() {
  mnuEditData_ = Named(new KeyMenu(tr("EditMenu"), this), "mnuEditData");
  ZoomInMarq_ = AddEntry("ZoomInMarq", tr("Zoom In"), Qt::Key_Z);
  JustZoomOut_ = AddEntry("JustZoomOut", tr("Zoom Out"), Qt::SHIFT | Qt::Key_Z);
  DelOutMarq_ = AddEntry("DelOutMarq", tr("Delete Outside"), Qt::SHIFT | Qt::Key_Delete);
  DelInMarq_ = AddEntry("DelInMarq", tr("Delete Inside"), Qt::Key_Delete);
  RestOutMarq_ = AddEntry("RestOutMarq", tr("Restore Outside"), Qt::SHIFT | Qt::Key_R);
  RestInMarq_ = AddEntry("RestInMarq", tr("Restore Inside"), Qt::Key_R);
  mnuCopyToLog_ = AddEntry("mnuCopyToLog", tr("Copy to Logfile"), Qt::CTRL | Qt::Key_C);
  AddEntry("CancelEdit", tr("Cancel"), {});
  mnuEditData_->addSeparator();
  keepInChannel_ = AddEntry("KeepInChannel", tr("Keep in Channel and Go On"), Qt::Key_K);
  keepInChannel_->setToolTip(tr(
      "Keep these radii here and in all of the same channel; then the next dataset that is whole"));
  undo_ = AddKey("UndoEdit", tr("Undo"), {Qt::CTRL | Qt::Key_Z});
  redo_ = AddKey("RedoEdit", tr("Redo"), {Qt::CTRL | Qt::Key_Y, Qt::CTRL | Qt::SHIFT | Qt::Key_Z});
  previous_ = AddKey("PrevDataset", tr("Previous dataset"), {Qt::CTRL | Qt::Key_PageUp});
  next_ = AddKey("NextDataset", tr("Next dataset"), {Qt::CTRL | Qt::Key_PageDown});
}

QAction* EditTab::AddKey(const char* name, const QString& caption,
                         const QList<QKeySequence>& keys) {
  auto* action = Named(new QAction(caption, this), name);
  action->setShortcuts(keys);
  action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  addAction(action);
  return action;
}

QAction* EditTab::AddEntry(const char* name, const QString& caption, const QKeySequence& key) {
  QAction* entry = Named(mnuEditData_->addAction(caption), name);
  entry->setShortcut(key);
  return entry;
}

void EditTab::ConnectSignals() {
  connect(editTChart_, &PointChart::MarqueeDrawn, this, &EditTab::OfferActions);
  connect(editTChart_, &PointChart::CtrlPressed, this, &EditTab::CopyToLog);
  connect(editTChart_, &PointChart::PointerMoved, this, &EditTab::PointerMoved);
  connect(mnuEditData_, &QMenu::aboutToHide, editTChart_, &PointChart::HideMarquee);
  connect(ZoomInMarq_, &QAction::triggered, this, [this] {
    editTChart_->ZoomTo({marquee_.x1, marquee_.y1, marquee_.x2, marquee_.y2});
  });
  connect(JustZoomOut_, &QAction::triggered, editTChart_, &PointChart::ShowAll);
  ConnectPointEdit(DelOutMarq_, DeleteOutside);
  ConnectPointEdit(DelInMarq_, DeleteInside);
  ConnectPointEdit(RestOutMarq_, RestoreOutside);
  ConnectPointEdit(RestInMarq_, RestoreInside);
  connect(mnuCopyToLog_, &QAction::triggered, this, &EditTab::CopyToLog);
  connect(cmdSetMenBase_, &QPushButton::clicked, this, &EditTab::SetMeniscusAndBaseFromLines);
  connect(cmdRestoreAll_, &QPushButton::clicked, this, [this] { Edit(RestoreAll); });
  connect(cmdZoomOut_, &QPushButton::clicked, editTChart_, &PointChart::ShowAll);
  connect(cmdUndoEdit_, &QPushButton::clicked, this, &EditTab::Undo);
  connect(cmdRedoEdit_, &QPushButton::clicked, this, &EditTab::Redo);
  connect(undo_, &QAction::triggered, this, &EditTab::Undo);
  connect(redo_, &QAction::triggered, this, &EditTab::Redo);
  ConnectAdditions();
}

void EditTab::ConnectAdditions() {
  connect(cmdPrevDataset_, &QPushButton::clicked, this, [this] { Step(-1); });
  connect(cmdNextDataset_, &QPushButton::clicked, this, [this] { Step(1); });
  connect(previous_, &QAction::triggered, this, [this] { Step(-1); });
  connect(next_, &QAction::triggered, this, [this] { Step(1); });
  connect(strip_, &DatasetStrip::Chosen, this, &EditTab::ShowDataset);
  connect(range_, &RangeLine::KeepRequested, this, &EditTab::KeepTypedRange);
  connect(range_, &RangeLine::SameChannelRequested, this, &EditTab::KeepInSameChannel);
  connect(keepInChannel_, &QAction::triggered, this, &EditTab::KeepMarqueeInChannel);
  connect(range_, &RangeLine::UndoSameChannelRequested, this, &EditTab::UndoSameChannel);
}

void EditTab::ConnectPointEdit(QAction* entry, PointEdit edit) {
  connect(entry, &QAction::triggered, this,
          [this, edit] { Edit([this, edit](Dataset& dataset) { edit(dataset, marquee_); }); });
}

Dataset* EditTab::Shown() const {
  std::vector<Dataset>& datasets = session_.Module.Store.Datasets;
  const auto place = static_cast<std::size_t>(EditDataset_);
  return EditDataset_ >= 0 && place < datasets.size() ? &datasets[place] : nullptr;
}

const ChartWidget& EditTab::ShownChart() const {
  return *editTChart_;
}

void EditTab::ShowDataset(int position) {
  EditDataset_ = position;
  Dataset& dataset = *Shown();
  static_cast<void>(OpenForEditing(dataset));  // a blank is shown all the same
  mnuEditData_->close();
  editTChart_->SetChart(DatasetChart(dataset, Lines::kAsRecorded));
  range_->Forget();
  UpdateActions();
  UpdatePlace();
  emit Opened();
}

void EditTab::Clear() {
  EditDataset_ = -1;
  mnuEditData_->close();
  Chart empty;
  empty.title = tr("Open a dataset by its button on the tab \"Loaded Data\"").toStdString();
  editTChart_->SetChart(empty);
  range_->Forget();
  UpdateActions();
  UpdatePlace();
}

void EditTab::Redraw() {
  if (const Dataset* dataset = Shown()) {
    editTChart_->UpdateChart(DatasetChart(*dataset, Lines::kStay));
  }
  UpdateActions();
  UpdatePlace();
}

Chart EditTab::DatasetChart(const Dataset& dataset, Lines lines) {
  const QuorvaneModule& module = session_.Module;
  Chart chart =
      PlotPoints(dataset, {module.Preferences.GoodColor, module.Preferences.DeletedColor});
  const bool recorded = dataset.Rmen == Rmen_ && dataset.Rbase == Rbase_;
  if (lines == Lines::kStay && recorded) {
    const std::vector<ChartMark>& shown = editTChart_->GetChart().panels.front().marks;
    std::vector<ChartMark>& marks = chart.panels.front().marks;
    if (shown.size() == marks.size()) marks = shown;
  }
  Rmen_ = dataset.Rmen;
  Rbase_ = dataset.Rbase;
  return chart;
}

void EditTab::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Redraw();  // values were perhaps typed on another tab
}

void EditTab::SetCalculating(bool on) {
  mnuEditData_->close();
  setEnabled(!on);
  UpdateActions();
  UpdatePlace();
}

void EditTab::UpdateActions() {
  const Dataset* dataset = Shown();
  const bool editable = dataset != nullptr && !RefusalOfEditing(*dataset);
  for (QWidget* button : {cmdSetMenBase_, cmdRestoreAll_}) button->setEnabled(editable);
  cmdZoomOut_->setEnabled(dataset != nullptr);
  for (QAction* entry : {DelInMarq_, DelOutMarq_, RestInMarq_, RestOutMarq_, keepInChannel_}) {
    entry->setEnabled(editable);
  }
  const EditHistory& edits = session_.Module.Store.Edits;
  undo_->setEnabled(isEnabled() && editable && edits.CanUndo(*dataset, EditDataset_));
  redo_->setEnabled(isEnabled() && editable && edits.CanRedo(*dataset, EditDataset_));
  cmdUndoEdit_->setEnabled(undo_->isEnabled());
  cmdRedoEdit_->setEnabled(redo_->isEnabled());
  range_->ShowKept(editable ? KeptRange(*dataset) : std::nullopt);
  range_->SetAvailable(editable, edits.CanUndoCommand(session_.Module.Store.Datasets));
}

void EditTab::UpdatePlace() {
  const int count = session_.Module.Store.NumDatasets();
  places_->setVisible(count > 1);
  if (Shown() == nullptr) {
    lblEditPlace_->setText(tr("%1 datasets").arg(count));
  } else {
    lblEditPlace_->setText(tr("%1 of %2").arg(EditDataset_ + 1).arg(count));
  }
  const bool open = isEnabled() && count > 1;
  previous_->setEnabled(open && EditDataset_ > 0);
  next_->setEnabled(open && EditDataset_ < count - 1);
  cmdPrevDataset_->setEnabled(previous_->isEnabled());
  cmdNextDataset_->setEnabled(next_->isEnabled());
  strip_->Refresh(Shown() == nullptr ? -1 : EditDataset_);
}

void EditTab::OfferActions(const ChartArea& area, const QPoint& where) {
  if (Shown() == nullptr) {
    editTChart_->HideMarquee();
    return;
  }
  marquee_ = {area.x1, area.y1, area.x2, area.y2};
  mnuEditData_->popup(where);
}

void EditTab::Edit(const std::function<void(Dataset&)>& edit) {
  session_.Module.Store.Edits.Apply(*Shown(), EditDataset_, edit);
  AfterEdit();
}

void EditTab::SetMeniscusAndBaseFromLines() {
  const std::vector<ChartMark> lines = editTChart_->GetChart().panels.front().marks;
  Edit([&](Dataset& dataset) { SetMeniscusAndBase(dataset, lines[0].x, lines[1].x); });
  editTChart_->UpdateChart(DatasetChart(*Shown(), Lines::kAsRecorded));  // were perhaps crossed
}

void EditTab::Undo() {
  if (!isVisible()) return;  // the key was pressed on another tab
  session_.Module.Store.Edits.Undo(*Shown(), EditDataset_);
  AfterEdit();
}

void EditTab::Redo() {
  if (!isVisible()) return;
  session_.Module.Store.Edits.Redo(*Shown(), EditDataset_);
  AfterEdit();
}

void EditTab::AfterEdit() {
  Redraw();
  emit Edited();
}

void EditTab::Step(int by) {
  const int target = EditDataset_ + by;
  if (!isVisible() || target < 0 || target >= session_.Module.Store.NumDatasets()) return;
  ShowDataset(target);
}

void EditTab::TellRefusal(const Refusal& refusal) {
  session_.Ask.ShowMessage(window(), tr("Keep Range"), QString::fromStdString(LineOf(refusal)),
                           MessageIcon::kExclamation);
}

// False if it was refused, which was told.
bool EditTab::KeepTypedRange() {
  RadiusSpan span;
  Refusal refusal = range_->Read(span);
  if (!refusal) refusal = KeepRangeOf(session_.Module.Store, EditDataset_, span);
  if (refusal) {
    TellRefusal(refusal);
    range_->FocusBounds();
    return false;
  }
  range_->Take(span, KeptRange(*Shown()));
  AfterEdit();
  return true;
}

void EditTab::KeepInSameChannel() {
  DatasetStore& store = session_.Module.Store;
  const ChannelReach reach = range_->Reach();
  if (const Refusal refusal = RefusalOfSpreading(store, EditDataset_, reach)) {
    TellRefusal(refusal);
    return;
  }
  RadiusSpan span;
  if (range_->IsChanged() && !KeepTypedRange()) return;
  if (const Refusal refusal = range_->Read(span)) {
    TellRefusal(refusal);
    return;
  }
  Spread(span);
}

// The radii of the rectangle, here and in all of the channel.
void EditTab::KeepMarqueeInChannel() {
  if (Shown() == nullptr) return;
  DatasetStore& store = session_.Module.Store;
  const RadiusSpan span{marquee_.x1, marquee_.x2};
  Refusal refusal = RefusalOfSpreading(store, EditDataset_, range_->Reach());
  if (!refusal) refusal = KeepRangeOf(store, EditDataset_, span);
  if (refusal) {
    TellRefusal(refusal);
    return;
  }
  range_->Forget();
  Spread(span);
  const std::optional<int> next = NextUntrimmed(store, EditDataset_);
  if (next) ShowDataset(*next);
}

void EditTab::Spread(const RadiusSpan& span) {
  const SpreadRange spread =
      SpreadOverChannel(session_.Module.Store, EditDataset_, span, range_->Reach());
  AfterEdit();
  emit Opened();
  const QString text = QString::fromStdString(TextOf(spread, EditDataset_, span));
  session_.Remark(text);
  if (spread.left.empty()) return;
  session_.Ask.ShowMessage(window(), tr("Same Channel"), text, MessageIcon::kExclamation);
}

void EditTab::UndoSameChannel() {
  DatasetStore& store = session_.Module.Store;
  const std::vector<int> undone = store.Edits.UndoCommand(store.Datasets);
  AfterEdit();
  session_.Remark(
      tr("\"Same Channel\" was taken back in: %1.").arg(QString::fromStdString(NumbersOf(undone))));
}

void EditTab::CopyToLog() {
  if (Shown() == nullptr) return;
  host_.SendPictureToLog(editTChart_->ShownChart());
  host_.PrintIt("");  // what is logged next stands below it
}

}  // namespace quorvane

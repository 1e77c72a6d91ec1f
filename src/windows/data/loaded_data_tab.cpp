#include "windows/data/loaded_data_tab.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>
#include <array>

#include "core/page/dataset_rules.h"
#include "fit/models.h"
#include "windows/controls/control_names.h"
#include "windows/controls/dataset_tip.h"
#include "windows/controls/page_controls.h"
#include "windows/controls/row_icons.h"
#include "windows/controls/row_keys.h"
#include "windows/controls/value_box.h"
#include "windows/data/info_window.h"

namespace quorvane {

namespace {

// Colours of the button "Edit": a dataset that was not yet opened for editing, one that was.
constexpr QColor kNotEdited(255, 0, 0);
constexpr QColor kEdited(0, 255, 0);
constexpr QColor kOnColor(0, 0, 0);  // readable on both

constexpr std::array<const char*, 4> kButtonHeads = {
    QT_TRANSLATE_NOOP("QObject", "Edit"), QT_TRANSLATE_NOOP("QObject", "Comments"),
    QT_TRANSLATE_NOOP("QObject", "Blank"), QT_TRANSLATE_NOOP("QObject", "Unload")};

// The columns of head and rows stand under one another because both are laid out here.
struct Columns {
  explicit Columns(const QWidget& widget) {
    const QFontMetrics metrics(widget.font());
    number = metrics.horizontalAdvance("0000");
    name = metrics.averageCharWidth() * 24;
    longestName = metrics.horizontalAdvance('W') * 34;
    const QPushButton sample(RowIcon(RowGlyph::kTick), QObject::tr("View"));
    for (std::size_t k = 0; k < kButtonHeads.size(); ++k) {
      buttons[k] =
          metrics.horizontalAdvance(QObject::tr(kButtonHeads[k])) + 2 * metrics.averageCharWidth();
    }
    buttons[0] = std::max(buttons[0], sample.sizeHint().width());
  }

  int number;
  int name;
  int longestName;
  std::array<int, kButtonHeads.size()> buttons;
};

void LayOut(QWidget* line, const std::array<QWidget*, 3>& front,
            const std::array<QWidget*, kButtonHeads.size()>& buttons) {
  const Columns columns(*line);
  front[0]->setFixedWidth(columns.number);
  front[2]->setMinimumWidth(columns.name);
  front[2]->setMaximumWidth(columns.longestName);
  auto* layout = new QHBoxLayout(line);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(front[0]);
  layout->addWidget(front[1]);
  layout->addWidget(front[2], 100);
  for (std::size_t k = 0; k < buttons.size(); ++k) {
    buttons[k]->setFixedWidth(columns.buttons[k]);
    layout->addWidget(buttons[k]);
  }
  layout->addStretch(1);
}

QToolButton* IconButton(const char* array, int i, RowGlyph glyph, const QString& tip) {
  auto* button = Named(new QToolButton, ElementName(array, i));
  button->setIcon(RowIcon(glyph));
  button->setToolTip(tip);
  button->setAccessibleName(tip);
  return button;
}

}  // namespace

LoadedDataTab::LoadedDataTab(Session& session, SessionHost& host, QWidget* parent)
    : QWidget(parent), session_(session), host_(host) {
  BuildWidgets();
  ConnectSignals();
  Rebuild();
}

void LoadedDataTab::BuildWidgets() {
  content_ = new QWidget;
  lines_ = new QVBoxLayout(content_);
  lines_->setContentsMargins(0, 0, 0, 0);
  lines_->addStretch();
  auto* scroll = new QScrollArea;
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  scroll->setWidget(content_);
  keys_ = new RowKeys(*scroll);
  content_->setAutoFillBackground(false);  // the tab's own background shows through
  scroll->viewport()->setAutoFillBackground(false);
  QScrollBar* bar = Named(scroll->verticalScrollBar(), "tabVScroll1");
  lblNoData_ = new QLabel(tr("No datasets are loaded."));
  mnuBlank_ = Named(new QMenu(tr("BlankMenu"), this), "mnuBlank");
  mnuBlank_->setToolTipsVisible(true);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(head_ = BuildHead());
  layout->addWidget(lblNoData_);
  layout->addWidget(scroll, 1);
  layout->addWidget(foot_ = BuildFoot());
  // Rows that could be moved sideways would leave their head behind.
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setMinimumWidth(head_->minimumSizeHint().width() + bar->sizeHint().width());
  // The head ends where the rows end.
  connect(bar, &QScrollBar::rangeChanged, this, [this, bar](int low, int high) {
    head_->layout()->setContentsMargins(0, 0, high > low ? bar->sizeHint().width() : 0, 0);
  });
}

QWidget* LoadedDataTab::BuildHead() {
  chkUseAll_ = Named(new QCheckBox, "chkUseAll");
  chkUseAll_->setAccessibleName(tr("Fit all datasets"));
  chkUseAll_->setToolTip(tr("Fit all datasets, or none"));
  auto* number = new QLabel(tr("#"));
  number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  std::array<QWidget*, kButtonHeads.size()> heads;
  for (std::size_t k = 0; k < heads.size(); ++k) {
    auto* head = new QLabel(QObject::tr(kButtonHeads[k]));
    head->setAlignment(Qt::AlignCenter);
    heads[k] = head;
  }
  auto* line = new QWidget;
  LayOut(line, {number, chkUseAll_, new QLabel(tr("Dataset"))}, heads);
  return line;
}

QWidget* LoadedDataTab::BuildFoot() {
  cmdRemoveAllData_ = Named(new QPushButton(tr("Unload All")), "cmdRemoveAllData");
  cmdRemoveAllData_->setToolTip(tr("Unload all datasets"));
  cmbModel_ = Named(new QComboBox, "cmbModel");
  for (const std::string_view name : ModelNames()) {
    cmbModel_->addItem(QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
  }
  auto* model = new QLabel(tr("Mo&del:"));
  model->setBuddy(cmbModel_);
  cmdSetFit_ = Named(new QPushButton(tr("Setup Fit")), "cmdSetFit");
  cmdSetFit_->setToolTip(tr("Build the parameter page for the checked datasets and this model"));
  auto* line = new QWidget;
  auto* layout = new QHBoxLayout(line);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(cmdRemoveAllData_);
  layout->addStretch();
  layout->addWidget(model);
  layout->addWidget(cmbModel_);
  layout->addWidget(cmdSetFit_);
  return line;
}

void LoadedDataTab::ConnectSignals() {
  connect(chkUseAll_, &QCheckBox::clicked, this, [this](bool on) {
    ChooseFrom(session_.Module.Store, 0, on);
    ShowChoices();
  });
  connect(cmdRemoveAllData_, &QPushButton::clicked, this, &LoadedDataTab::UnloadAll);
  connect(cmbModel_, &QComboBox::currentIndexChanged, this,
          [this](int index) { session_.Module.ChosenModel = FindModel(index); });
  connect(cmdSetFit_, &QPushButton::clicked, this, [this] {
    if (CommitPending()) emit SetupFitRequested();
  });
}

LoadedDataTab::Row LoadedDataTab::BuildRow(int i) {
  Row row;
  row.line = new QWidget;
  row.lblDatasetNum = Named(new QLabel(QString::number(i + 1)), ElementName("lblDatasetNum", i));
  row.lblDatasetNum->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  row.chkUseData = Named(new PageCheckBox, ElementName("chkUseData", i));
  row.chkUseData->setToolTip(tr("Fit this dataset?"));
  row.chkUseData->setAccessibleName(tr("Fit dataset %1").arg(i + 1));
  row.txtLoadData = Named(new ValueBox, ElementName("txtLoadData", i));
  row.txtLoadData->setAccessibleName(tr("Name of dataset %1").arg(i + 1));
  row.cmdEditData = Named(new QPushButton, ElementName("cmdEditData", i));
  row.cmdShowInfo = IconButton("cmdShowInfo", i, RowGlyph::kLines, tr("Display comment lines"));
  row.cmdBlankData = IconButton("cmdBlankData", i, RowGlyph::kSubtract, tr("Subtract a Blank"));
  row.cmdRemoveData = IconButton("cmdRemoveData", i, RowGlyph::kCross, tr("Unload Dataset"));
  LayOut(row.line, {row.lblDatasetNum, row.chkUseData, row.txtLoadData},
         {row.cmdEditData, row.cmdShowInfo, row.cmdBlankData, row.cmdRemoveData});
  keys_->AddRow({row.chkUseData, row.txtLoadData, row.cmdEditData, row.cmdShowInfo,
                 row.cmdBlankData, row.cmdRemoveData});
  return row;
}

void LoadedDataTab::ConnectRow(int i) {
  const Row& row = rows_[static_cast<std::size_t>(i)];
  row.txtLoadData->SetStore([this, i](const QString& text) { return Rename(i, text); });
  connect(row.chkUseData, &PageCheckBox::clicked, this, [this, i](bool on) {
    static_cast<void>(ChooseForFit(session_.Module.Store, i, on));
    ShowChoices();  // whether it was taken or not
  });
  connect(row.chkUseData, &PageCheckBox::CtrlReleased, this, [this, i, use = row.chkUseData] {
    ChooseFrom(session_.Module.Store, i, use->isChecked());
    ShowChoices();
  });
  connect(row.cmdEditData, &QPushButton::clicked, this, [this, i] { Edit(i); });
  connect(row.cmdShowInfo, &QToolButton::clicked, this, [this, i] { ShowInfo(i); });
  connect(row.cmdBlankData, &QToolButton::clicked, this, [this, i] { OfferBlanks(i); });
  connect(row.cmdRemoveData, &QToolButton::clicked, this, [this, i] { Unload(i); });
}

void LoadedDataTab::AddRow() {
  const int i = static_cast<int>(rows_.size());
  rows_.push_back(BuildRow(i));
  ConnectRow(i);
  lines_->insertWidget(i, rows_.back().line);
  rows_.back().line->show();
}

void LoadedDataTab::RemoveLastRow() {
  rows_.back().txtLoadData->SetStore({});  // a text that is left over has no dataset any more
  keys_->RemoveLastRow();
  QWidget* line = rows_.back().line;
  rows_.pop_back();
  line->hide();
  line->setParent(nullptr);
  line->deleteLater();  // one of its buttons may be the one that was clicked
}

void LoadedDataTab::Rebuild() {
  mnuBlank_->clear();  // its entries name rows
  const auto count = session_.Module.Store.Datasets.size();
  while (rows_.size() > count) RemoveLastRow();
  while (rows_.size() < count) AddRow();
  for (std::size_t i = 0; i < count; ++i) ShowRow(static_cast<int>(i));
  lines_->activate();  // or the new rows are painted once in the room of the old ones
  ShowChoices();
  lblNoData_->setVisible(count == 0);
  cmdRemoveAllData_->setEnabled(count > 0);
  cmdSetFit_->setEnabled(count > 0);
}

void LoadedDataTab::ShowRow(int i) {
  const Row& row = rows_[static_cast<std::size_t>(i)];
  const Dataset& dataset = session_.Module.Store.Datasets[static_cast<std::size_t>(i)];
  row.txtLoadData->ShowStored(QString::fromStdString(NameOf(dataset)));
  row.txtLoadData->setToolTip(DatasetTip(dataset));
  row.chkUseData->setEnabled(!RefusalOfFitting(dataset));
  row.cmdBlankData->setEnabled(!RefusalOfBlanking(dataset));
  ShowEditState(i);
}

void LoadedDataTab::ShowEditState(int i) {
  QPushButton* button = rows_[static_cast<std::size_t>(i)].cmdEditData;
  const Dataset& dataset = session_.Module.Store.Datasets[static_cast<std::size_t>(i)];
  if (RefusalOfEditing(dataset)) {
    button->setText(tr("View"));
    button->setToolTip(tr("View this blank"));
    button->setAccessibleDescription({});
    button->setIcon({});
    button->setPalette({});
    return;
  }
  const bool edited = dataset.Edited != 0.0;
  button->setText(tr("Edit"));
  button->setToolTip(tr("Edit this dataset"));
  button->setAccessibleDescription(edited ? tr("Opened before") : tr("Not opened yet"));
  button->setIcon(RowIcon(edited ? RowGlyph::kTick : RowGlyph::kPencil, kOnColor));
  QPalette palette;
  for (const auto group : {QPalette::Active, QPalette::Inactive}) {
    palette.setColor(group, QPalette::Button, edited ? kEdited : kNotEdited);
    palette.setColor(group, QPalette::ButtonText, kOnColor);
  }
  button->setPalette(palette);
}

void LoadedDataTab::ShowEditStates() {
  for (std::size_t i = 0; i < rows_.size(); ++i) ShowEditState(static_cast<int>(i));
}

void LoadedDataTab::ShowChoices() {
  const DatasetStore& store = session_.Module.Store;
  int samples = 0;
  int chosen = 0;
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    rows_[i].chkUseData->setChecked(store.UseData[i]);
    samples += IsBlank(store.Datasets[i]) ? 0 : 1;
    chosen += store.UseData[i] ? 1 : 0;
  }
  chkUseAll_->setEnabled(samples > 0);
  const bool some = chosen > 0 && chosen < samples;
  chkUseAll_->setTristate(some);  // so that a click never gives the third state
  chkUseAll_->setCheckState(some ? Qt::PartiallyChecked : chosen > 0 ? Qt::Checked : Qt::Unchecked);
}

void LoadedDataTab::ShowModel() {
  cmbModel_->setCurrentIndex(session_.Module.ChosenModel->index);
}

bool LoadedDataTab::CommitPending() {
  for (const Row& row : rows_) {
    if (!row.txtLoadData->Commit()) return false;
  }
  return true;
}

void LoadedDataTab::SetCalculating(bool on) {
  for (QWidget* part : {head_, content_, foot_}) part->setEnabled(!on);
}

bool LoadedDataTab::Rename(int i, const QString& text) {
  const bool taken = RenameDataset(session_.Module.Store, i, text.toStdString(), host_);
  ShowRow(i);
  ShowChoices();
  if (taken) emit DatasetsChanged();
  return taken;
}

void LoadedDataTab::Edit(int i) {
  if (CommitPending()) emit EditRequested(i);
}

void LoadedDataTab::ShowInfo(int i) {
  const Dataset& dataset = session_.Module.Store.Datasets[static_cast<std::size_t>(i)];
  const std::string comments = Comment1Of(dataset) + "\r\n" + Comment2Of(dataset);
  auto* window = new InfoWindow(QString::fromStdString(comments), this);
  window->open();
}

void LoadedDataTab::OfferBlanks(int i) {
  if (!CommitPending()) return;
  const std::vector<Dataset>& datasets = session_.Module.Store.Datasets;
  mnuBlank_->clear();
  int entries = 0;
  for (int k = 0; k < session_.Module.Store.NumDatasets(); ++k) {
    const Dataset& blank = datasets[static_cast<std::size_t>(k)];
    if (!IsBlank(blank)) continue;
    QAction* entry =
        mnuBlank_->addAction(QString::number(k + 1), this, [this, i, k] { Blank(i, k); });
    entry->setObjectName(ElementName("mnuBlankSets", entries++));
    entry->setToolTip(DatasetTip(blank));
  }
  if (entries == 0) {
    host_.ShowMessage(tr("Load Blank Sets").toStdString(),
                      tr("No Blank Datasets Loaded!").toStdString(), MessageIcon::kNone);
    return;
  }
  mnuBlank_->addSeparator();
  mnuBlank_->addAction(tr("Cancel"))->setObjectName("mnuCancelBlank");
  const QWidget* button = rows_[static_cast<std::size_t>(i)].cmdBlankData;
  mnuBlank_->popup(button->mapToGlobal(button->rect().bottomLeft()));
}

void LoadedDataTab::Blank(int i, int blank) {
  if (const Refusal refusal = TakeOffBlank(session_.Module.Store, i, blank, host_)) {
    host_.ShowMessage(tr("Load Blank Sets").toStdString(), refusal.text, MessageIcon::kNone);
    return;
  }
  ShowRow(i);
  emit DatasetsChanged();
}

void LoadedDataTab::Unload(int i) {
  if (!CommitPending()) return;
  emit Unloading();
  RemoveDataset(session_.Module.Store, i, host_);
  Rebuild();
  emit DatasetsChanged();
}

void LoadedDataTab::UnloadAll() {
  emit Unloading();
  RemoveAllDatasets(session_.Module.Store, host_);
  Rebuild();
  emit DatasetsChanged();
}

}  // namespace quorvane

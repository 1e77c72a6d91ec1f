#include "windows/data/file_check_pane.h"

#include <QEvent>
#include <QHeaderView>
#include <QListWidget>
#include <QStyle>
#include <QTableWidget>
#include <QVBoxLayout>

#include "windows/controls/control_names.h"
#include "windows/controls/warning_ink.h"

namespace quorvane {

namespace {

// Icons stand beside the first line of a text.
class WarningList : public QListWidget {
 protected:
  void initViewItemOption(QStyleOptionViewItem* option) const override {
    QListWidget::initViewItemOption(option);
    option->decorationAlignment = Qt::AlignTop | Qt::AlignHCenter;
  }
};

QTableWidgetItem* Cell(const std::string& text) {
  auto* item = new QTableWidgetItem(QString::fromStdString(text));
  item->setFlags(Qt::ItemIsEnabled);
  item->setToolTip(item->text());
  return item;
}

}  // namespace

FileCheckPane::FileCheckPane(QWidget* parent) : QWidget(parent) {
  BuildWidgets();
  Clear();
}

void FileCheckPane::BuildWidgets() {
  setObjectName("paneFileCheck");
  gridFileCheck_ = Named(new QTableWidget, "gridFileCheck");
  gridFileCheck_->setAccessibleName(tr("Two readings of the selected file"));
  gridFileCheck_->setColumnCount(2);
  gridFileCheck_->setHorizontalHeaderLabels({tr("Loading reads"), tr("Its words say")});
  gridFileCheck_->horizontalHeaderItem(0)->setToolTip(tr("By fixed columns, as \"Load\" does"));
  gridFileCheck_->horizontalHeaderItem(1)->setToolTip(
      tr("Split at blanks, TABs, commas and semicolons"));
  gridFileCheck_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  gridFileCheck_->horizontalHeader()->setHighlightSections(false);
  gridFileCheck_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  gridFileCheck_->setFocusPolicy(Qt::TabFocus);  // the arrows scroll it on a low screen
  gridFileCheck_->setTabKeyNavigation(false);
  gridFileCheck_->setSelectionMode(QAbstractItemView::NoSelection);
  gridFileCheck_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  const int line = fontMetrics().height() + 2;
  gridFileCheck_->verticalHeader()->setMinimumSectionSize(line);
  gridFileCheck_->verticalHeader()->setDefaultSectionSize(line);
  gridFileCheck_->horizontalHeader()->setFixedHeight(line);
  lstFileWarnings_ = Named<QListWidget>(new WarningList, "lstFileWarnings");
  lstFileWarnings_->setAccessibleName(tr("Warnings about the selected file"));
  lstFileWarnings_->setWordWrap(true);
  lstFileWarnings_->setSelectionMode(QAbstractItemView::NoSelection);
  lstFileWarnings_->setResizeMode(QListView::Adjust);
  lstFileWarnings_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  lstFileWarnings_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  lstFileWarnings_->setIconSize(QSize(line - 2, line - 2));
  lstFileWarnings_->setMinimumHeight(2 * line + 4);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(gridFileCheck_);
  layout->addWidget(lstFileWarnings_, 1);
}

void FileCheckPane::ShowCheck(FileCheck check, std::string drift) {
  shown_ = true;
  check_ = std::move(check);
  drift_ = std::move(drift);
  ShowRows();
  ShowWarnings();
}

void FileCheckPane::Clear() {
  ShowCheck({}, {});
  shown_ = false;
  lstFileWarnings_->clear();
}

void FileCheckPane::ShowRows() {
  const std::vector<CheckRow> rows = CheckRows(check_);
  gridFileCheck_->setRowCount(static_cast<int>(rows.size()));
  for (int k = 0; k < gridFileCheck_->rowCount(); ++k) {
    const CheckRow& row = rows[static_cast<std::size_t>(k)];
    gridFileCheck_->setVerticalHeaderItem(k, Cell(row.label));
    for (int column = 0; column < 2; ++column) {
      QTableWidgetItem* item = Cell(column == 0 ? row.columns : row.words);
      if (row.differs) item->setForeground(WarningInk(palette()));
      gridFileCheck_->setItem(k, column, item);
    }
  }
  constexpr int kFewestRows = 3;
  const int line = gridFileCheck_->verticalHeader()->defaultSectionSize();
  const int rest = gridFileCheck_->horizontalHeader()->height() + 2 * gridFileCheck_->frameWidth();
  gridFileCheck_->setMinimumHeight(line * kFewestRows + rest);
  gridFileCheck_->setMaximumHeight(line * gridFileCheck_->rowCount() + rest);
}

void FileCheckPane::ShowWarnings() {
  lstFileWarnings_->clear();
  if (!check_.fault.empty()) {
    AddLine(QStyle::SP_MessageBoxCritical, QString::fromStdString(check_.fault),
            WarningInk(palette()));
  }
  std::vector<std::string> warnings = check_.warnings;
  if (!drift_.empty()) warnings.push_back(drift_);
  for (const std::string& warning : warnings) {
    AddLine(QStyle::SP_MessageBoxWarning, QString::fromStdString(warning), WarningInk(palette()));
  }
  if (lstFileWarnings_->count() == 0) {
    AddLine(QStyle::SP_DialogApplyButton, tr("Nothing to warn of."),
            palette().brush(QPalette::Text));
  }
}

void FileCheckPane::AddLine(int icon, const QString& text, const QBrush& ink) {
  auto* item = new QListWidgetItem(style()->standardIcon(static_cast<QStyle::StandardPixmap>(icon)),
                                   text, lstFileWarnings_);
  item->setFlags(Qt::ItemIsEnabled);
  item->setForeground(ink);
  item->setToolTip(text);
}

void FileCheckPane::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && shown_) {
    ShowRows();
    ShowWarnings();
  }
}

}  // namespace quorvane

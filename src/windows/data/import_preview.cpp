#include "windows/data/import_preview.h"

#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QStyle>
#include <QTableWidget>
#include <QTextBlock>
#include <QVBoxLayout>
#include <algorithm>

#include "plot/chart_widget.h"
#include "windows/controls/control_names.h"

namespace quorvane {

namespace {

constexpr std::size_t kShownLines = 300;    // of the text, and rows
constexpr std::size_t kShownLetters = 160;  // of a line

QString Number(double value) {
  constexpr int kDigits = 8;
  return QString::number(value, 'g', kDigits);
}

QTableWidgetItem* Cell(const QString& text) {
  auto* cell = new QTableWidgetItem(text);
  cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  return cell;
}

// A part of the window with its title above it.
QWidget* Titled(const QString& title, QWidget* part) {
  auto* box = new QWidget;
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  auto* caption = new QLabel(title);
  caption->setBuddy(part);
  layout->addWidget(caption);
  layout->addWidget(part, 1);
  return box;
}

Chart CurveOf(const TextImport& import) {
  ChartSeries series{"", SeriesStyle::kLine, kChartBlue, {}, {}};
  for (const ImportedRow& row : import.rows) {
    series.x.push_back(row.r);
    series.y.push_back(row.c);
  }
  Chart chart;
  chart.bottomTitle = "Radius (cm)";
  chart.panels.push_back({"Signal", 1.0, {std::move(series)}, {}});
  return chart;
}

}  // namespace

ImportPreview::ImportPreview(QWidget* parent)
    : QWidget(parent),
      txtLines_(Named(new QPlainTextEdit, "txtImportLines")),
      gridRows_(Named(new QTableWidget, "gridImportRows")),
      chart_(Named(new ChartWidget, "teeImport")),
      lstRemarks_(Named(new QListWidget, "lstImportRemarks")) {
  txtLines_->setReadOnly(true);
  txtLines_->setTabChangesFocus(true);
  txtLines_->setLineWrapMode(QPlainTextEdit::NoWrap);
  QFont font(QStringLiteral("Courier New"), txtLines_->font().pointSize());
  font.setStyleHint(QFont::TypeWriter);
  txtLines_->setFont(font);
  gridRows_->setColumnCount(4);
  gridRows_->setHorizontalHeaderLabels({tr("Line"), tr("Radius"), tr("Signal"), tr("sd")});
  gridRows_->verticalHeader()->hide();
  gridRows_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
  gridRows_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  gridRows_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  gridRows_->setTabKeyNavigation(false);
  gridRows_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  lstRemarks_->setWordWrap(true);
  lstRemarks_->setSelectionMode(QAbstractItemView::NoSelection);
  lstRemarks_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  auto* upper = new QSplitter(Qt::Horizontal);
  upper->addWidget(Titled(tr("The text"), txtLines_));
  upper->addWidget(Titled(tr("Understood as"), gridRows_));
  upper->setSizes({500, 400});
  const int line = fontMetrics().height();
  lstRemarks_->setIconSize(QSize(line, line));
  auto* lower = new QSplitter(Qt::Horizontal);
  lower->addWidget(chart_);
  lower->addWidget(Titled(tr("Remarks"), lstRemarks_));
  lower->setSizes({500, 400});
  auto* both = new QSplitter(Qt::Vertical);
  both->addWidget(upper);
  both->addWidget(lower);
  both->setSizes({280, 280});
  for (QSplitter* splitter : {upper, lower, both}) splitter->setChildrenCollapsible(false);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(both);
}

void ImportPreview::Show(const std::string& bytes, const TextImport& import, const QString& fault) {
  ShowLines(bytes, import);
  ShowRows(import);
  ShowRemarks(import, fault);
  chart_->SetChart(import.rows.empty() ? Chart() : CurveOf(import));
}

void ImportPreview::Clear() {
  Show({}, {}, {});
}

// With their numbers; grey what stands before the rows, red what cannot be read.
void ImportPreview::ShowLines(const std::string& bytes, const TextImport& import) {
  const bool text = RefusalOfText(bytes).empty();
  const std::vector<std::string> lines =
      text ? TextLines(std::string_view(bytes).substr(0, std::size_t{1} << 20U))
           : std::vector<std::string>();
  QStringList shown;
  for (std::size_t k = 0; k < std::min(lines.size(), kShownLines); ++k) {
    shown << QStringLiteral("%1  ").arg(k + 1, 4) +
                 QString::fromUtf8(lines[k].substr(0, kShownLetters))
                     .replace('\t', QStringLiteral(" \u2192 "));
  }
  txtLines_->setPlainText(shown.join('\n'));
  QList<QTextEdit::ExtraSelection> marks;
  const auto mark = [&](std::size_t line, const QTextCharFormat& format) {
    if (line >= static_cast<std::size_t>(shown.size())) return;
    QTextEdit::ExtraSelection selection;
    selection.cursor =
        QTextCursor(txtLines_->document()->findBlockByNumber(static_cast<int>(line)));
    selection.cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    selection.format = format;
    marks << selection;
  };
  QTextCharFormat before;
  before.setForeground(palette().brush(QPalette::Disabled, QPalette::Text));
  for (std::size_t k = 0; k < std::min(import.skipped, kShownLines); ++k) mark(k, before);
  QTextCharFormat unreadable;
  unreadable.setForeground(Qt::black);
  unreadable.setBackground(QColor(255, 190, 190));
  for (const UnreadableRow& row : import.unreadable) mark(row.line - 1, unreadable);
  txtLines_->setExtraSelections(marks);
}

void ImportPreview::ShowRows(const TextImport& import) {
  const std::size_t count = std::min(import.rows.size(), kShownLines);
  gridRows_->setRowCount(static_cast<int>(count));
  for (std::size_t k = 0; k < count; ++k) {
    const ImportedRow& row = import.rows[k];
    const QString texts[] = {QString::number(row.line), Number(row.r), Number(row.c),
                             import.columns.error ? Number(row.err) : QString()};
    int column = 0;
    for (const QString& text : texts) gridRows_->setItem(static_cast<int>(k), column++, Cell(text));
  }
  gridRows_->setColumnHidden(3, !import.columns.error);
}

void ImportPreview::ShowRemarks(const TextImport& import, const QString& fault) {
  lstRemarks_->clear();
  const auto add = [this](QStyle::StandardPixmap icon, const QString& text) {
    lstRemarks_->addItem(new QListWidgetItem(style()->standardIcon(icon), text));
  };
  if (!fault.isEmpty()) add(QStyle::SP_MessageBoxCritical, fault);
  if (import.width > 0) {
    add(QStyle::SP_MessageBoxInformation, QString::fromStdString(FormText(import)));
  }
  if (!import.unreadable.empty()) {
    add(QStyle::SP_MessageBoxWarning,
        tr("Rows that cannot be read: %1").arg(import.unreadable.size()));
  }
  for (const std::string& text : UnreadableTexts(import)) {
    add(QStyle::SP_MessageBoxWarning, QString::fromStdString(text));
  }
  for (const std::string& remark : import.remarks) {
    add(QStyle::SP_MessageBoxInformation, QString::fromStdString(remark));
  }
}

}  // namespace quorvane

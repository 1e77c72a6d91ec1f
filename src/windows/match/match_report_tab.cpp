#include "windows/match/match_report_tab.h"

#include <QMenu>
#include <QScrollBar>
#include <QTextCursor>
#include <QVBoxLayout>

#include "plot/chart_export.h"
#include "plot/chart_widget.h"
#include "rtf/picture_file.h"
#include "rtf/rtf_writer.h"
#include "windows/controls/control_names.h"
#include "windows/log/log_edit.h"
#include "windows/log/rich_text_document.h"

namespace quorvane {

namespace {

constexpr PictureSize kPictureSize = {400, 360};

CharFormat ReportLook() {
  CharFormat look;
  look.halfPoints = 18;
  return look;
}

}  // namespace

MatchReportTab::MatchReportTab(Session& session, QWidget* parent) : QWidget(parent) {
  BuildWidgets(session);
  ConnectSignals();
}

void MatchReportTab::BuildWidgets(Session& session) {
  rtMatchBox_ = Named(new LogEdit([&session] { return session.Calculating; }), "rtMatchBox");
  rtMatchBox_->setAccessibleName(tr("Report"));
  rtMatchBox_->setFont(FontOf(ReportLook()));
  TChartMatchFit_ = Named(new ChartWidget(this), "TChartMatchFit");
  TChartMatchFit_->hide();
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(rtMatchBox_);
}

void MatchReportTab::ConnectSignals() {
  connect(rtMatchBox_, &LogEdit::MenuWanted, this, [this](const QPoint& globalPosition) {
    QMenu* menu = rtMatchBox_->createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(globalPosition);
  });
  follow_.setSingleShot(true);
  connect(&follow_, &QTimer::timeout, this, [this] { ShowFrom(head_); });
}

void MatchReportTab::Append(const MatchReport& report) {
  rtMatchBox_->moveCursor(QTextCursor::End);
  head_ = rtMatchBox_->textCursor().position();
  for (const MatchReportItem& item : report) {
    if (const auto* line = std::get_if<std::string>(&item)) AppendLine(*line);
    if (const auto* chart = std::get_if<Chart>(&item)) AppendPicture(*chart);
  }
  rtMatchBox_->moveCursor(QTextCursor::End);
  follow_.start(0);  // once the tab is open and laid out
}

void MatchReportTab::AppendLine(const std::string& text) {
  QTextCursor end(rtMatchBox_->document());
  end.movePosition(QTextCursor::End);
  const int from = end.position();
  end.insertText(QString::fromStdString(text) + '\n');
  rtMatchBox_->KeepTablesWhole(from, end.position() - 1);  // names may be long
}

void MatchReportTab::AppendPicture(const Chart& chart) {
  TChartMatchFit_->SetChart(chart);
  QTextCursor end(rtMatchBox_->document());
  end.movePosition(QTextCursor::End);
  InsertPicture(
      PictureFromFile(RenderChart(TChartMatchFit_->GetChart(), PictureFormat::kPng, kPictureSize)),
      end);
}

void MatchReportTab::ShowFrom(int position) {
  QTextCursor cursor(rtMatchBox_->document());
  cursor.setPosition(position);
  QScrollBar* bar = rtMatchBox_->verticalScrollBar();
  bar->setValue(bar->value() + rtMatchBox_->cursorRect(cursor).top());
}

std::string MatchReportTab::ToRtf() const {
  return WriteRtf(RichTextOf(*rtMatchBox_->document()));
}

const QTextEdit* MatchReportTab::Text() const {
  return rtMatchBox_;
}

}  // namespace quorvane

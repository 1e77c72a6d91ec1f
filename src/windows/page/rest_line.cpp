#include "windows/page/rest_line.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>

#include "base/number_format.h"
#include "stats/fit_rest.h"
#include "windows/controls/control_names.h"

namespace quorvane {

namespace {

// The verdict in few words; its sentences are in the tool tip and in "Fit Quality".
QString InBrief(const RestVerdict& verdict) {
  if (!verdict.atRest) return QObject::tr("Not known whether the fit is at rest.");
  if (*verdict.atRest) return QString::fromStdString(verdict.reason);
  const double fall = 100.0 * verdict.sumFall / (1.0 + verdict.sumFall);
  const QString percent = QString::fromStdString(FormatNumber(fall, "0.0#"));
  if (!verdict.determined || verdict.moved.empty()) {
    return QObject::tr("Not at rest: the sum can fall by %1 %.").arg(percent);
  }
  const char* const digits = verdict.largestMove < 1e4 ? "0.0#" : "0.0E+00";
  return QObject::tr("Not at rest: the sum can fall by %1 %, %2 moves by %3 sd.")
      .arg(percent, QString::fromStdString(verdict.moved),
           QString::fromStdString(FormatNumber(verdict.largestMove, digits)));
}

}  // namespace

RestLine::RestLine(QWidget* parent)
    : QWidget(parent), mark_(Named(new QLabel, "imgRest")), lblRest_(Named(new QLabel, "lblRest")) {
  lblRest_->setWordWrap(true);
  lblRest_->setAccessibleName(tr("Whether the fit stands at rest"));
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(mark_);
  layout->addWidget(lblRest_, 1);
  Clear();
}

void RestLine::Clear() {
  ShowMark({});
  lblRest_->clear();
  lblRest_->setToolTip({});
}

void RestLine::ShowJudging() {
  ShowMark({});
  lblRest_->setText(tr("Is the fit at rest? A copy of it goes on ..."));
}

void RestLine::ShowVerdict(const RestVerdict& verdict) {
  const bool fine = verdict.atRest.value_or(false) && verdict.determined;
  ShowMark(
      style()->standardIcon(fine ? QStyle::SP_DialogApplyButton : QStyle::SP_MessageBoxWarning));
  lblRest_->setText(InBrief(verdict));
  lblRest_->setToolTip(QString::fromStdString(verdict.reason));
}

void RestLine::ShowMark(const QIcon& mark) {
  const int side = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
  mark_->setPixmap(mark.pixmap(QSize(side, side), devicePixelRatioF()));
  mark_->setVisible(!mark.isNull());
}

}  // namespace quorvane

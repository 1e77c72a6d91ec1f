#include "windows/page/rest_line.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>

#include "stats/fit_rest.h"
#include "windows/controls/control_names.h"

namespace quorvane {

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
}

void RestLine::ShowJudging() {
  ShowMark({});
  lblRest_->setText(tr("Is the fit at rest? A copy of it goes on ..."));
}

void RestLine::ShowVerdict(const RestVerdict& verdict) {
  const bool atRest = verdict.atRest.value_or(false);
  ShowMark(
      style()->standardIcon(atRest ? QStyle::SP_DialogApplyButton : QStyle::SP_MessageBoxWarning));
  lblRest_->setText(QString::fromStdString(verdict.reason));
}

void RestLine::ShowMark(const QIcon& mark) {
  const int side = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
  mark_->setPixmap(mark.pixmap(QSize(side, side), devicePixelRatioF()));
  mark_->setVisible(!mark.isNull());
}

}  // namespace quorvane

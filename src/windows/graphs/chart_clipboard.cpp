#include "windows/graphs/chart_clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <exception>
#include <memory>

#include "windows/controls/busy_pointer.h"
#include "windows/session/dialogs.h"

namespace quorvane {

namespace {

void PutOnClipboard(const Chart& chart, PictureSize size) {
  const BusyPointer busy;
  const std::string png = RenderChart(chart, PictureFormat::kPng, size);
  auto data = std::make_unique<QMimeData>();
  data->setImageData(QImage::fromData(QByteArray::fromStdString(png)));
  data->setData("image/svg+xml",
                QByteArray::fromStdString(RenderChart(chart, PictureFormat::kSvg, size)));
  QGuiApplication::clipboard()->setMimeData(data.release());
}

}  // namespace

void CopyChart(const Chart& chart, PictureSize size, Dialogs& ask, QWidget* parent) {
  try {
    PutOnClipboard(chart, size);
  } catch (const std::exception& fault) {
    ask.ShowMessage(parent, "", QString::fromUtf8(fault.what()), MessageIcon::kExclamation);
  }
}

}  // namespace quorvane

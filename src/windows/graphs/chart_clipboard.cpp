#include "windows/graphs/chart_clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <memory>

namespace quorvane {

void CopyChart(const Chart& chart, PictureSize size) {
  const std::string png = RenderChart(chart, PictureFormat::kPng, size);
  auto data = std::make_unique<QMimeData>();
  data->setImageData(QImage::fromData(QByteArray::fromStdString(png)));
  data->setData("image/svg+xml",
                QByteArray::fromStdString(RenderChart(chart, PictureFormat::kSvg, size)));
  QGuiApplication::clipboard()->setMimeData(data.release());
}

}  // namespace quorvane

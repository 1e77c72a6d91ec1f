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

// `render` makes the bytes of a format.
template <class Render>
void PutOnClipboard(Dialogs& ask, QWidget* parent, Render render) {
  try {
    const BusyPointer busy;
    auto data = std::make_unique<QMimeData>();
    data->setImageData(QImage::fromData(QByteArray::fromStdString(render(PictureFormat::kPng))));
    data->setData("image/svg+xml", QByteArray::fromStdString(render(PictureFormat::kSvg)));
    QGuiApplication::clipboard()->setMimeData(data.release());
  } catch (const std::exception& fault) {
    ask.ShowMessage(parent, "", QString::fromUtf8(fault.what()), MessageIcon::kExclamation);
  }
}

}  // namespace

void CopyChart(const Chart& chart, PictureSize size, Dialogs& ask, QWidget* parent) {
  PutOnClipboard(ask, parent,
                 [&](PictureFormat format) { return RenderChart(chart, format, size); });
}

void CopyFigure(const Figure& figure, FigureSize size, Dialogs& ask, QWidget* parent) {
  PutOnClipboard(ask, parent,
                 [&](PictureFormat format) { return RenderFigure(figure, format, size); });
}

}  // namespace quorvane

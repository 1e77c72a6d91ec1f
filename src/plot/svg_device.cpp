#include "plot/svg_device.h"

#include <QBuffer>
#include <QFont>
#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QPixmap>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

namespace quorvane {

namespace {

// With as many decimals as it needs, three at most.
QString Number(double value) {
  constexpr int kDecimals = 3;
  QString text = QString::number(value, 'f', kDecimals);
  while (text.endsWith(u'0')) text.chop(1);
  if (text.endsWith(u'.')) text.chop(1);
  return text == QLatin1String("-0") ? QStringLiteral("0") : text;
}

QString Point(double x, double y) {
  return Number(x) + u' ' + Number(y);
}

// For element contents and quoted attributes. Control characters have no place in XML.
QString Escaped(const QString& text) {
  QString kept;
  for (const QChar c : text) {
    const bool allowed = c.unicode() >= 0x20 && c.unicode() < 0xFFFE;
    kept += allowed ? c : QChar(u' ');
  }
  return kept.toHtmlEscaped();
}

QString Attribute(const char* name, const QString& value) {
  return u' ' + QLatin1String(name) + QLatin1String("=\"") + value + u'"';
}

// `name` and `name`-opacity; the latter only where something shines through.
QString Paint(const char* name, const QColor& color, double opacity) {
  QString text = Attribute(name, color.name(QColor::HexRgb));
  const double alpha = color.alphaF() * opacity;
  if (alpha < 1.0) text += Attribute(qPrintable(QLatin1String(name) + "-opacity"), Number(alpha));
  return text;
}

QString Stroke(const QPen& pen, double opacity) {
  if (pen.style() == Qt::NoPen) return Attribute("stroke", "none");
  const double width = pen.widthF() > 0.0 ? pen.widthF() : 1.0;
  QString text = Paint("stroke", pen.color(), opacity) + Attribute("stroke-width", Number(width));
  if (pen.capStyle() == Qt::SquareCap) text += Attribute("stroke-linecap", "square");
  if (pen.capStyle() == Qt::RoundCap) text += Attribute("stroke-linecap", "round");
  if (pen.joinStyle() == Qt::BevelJoin) text += Attribute("stroke-linejoin", "bevel");
  if (pen.joinStyle() == Qt::RoundJoin) text += Attribute("stroke-linejoin", "round");
  if (pen.style() != Qt::SolidLine) {
    QStringList lengths;
    for (const double length : pen.dashPattern()) lengths += Number(length * width);
    text += Attribute("stroke-dasharray", lengths.join(u' '));
  }
  return text;
}

QString Fill(const QBrush& brush, double opacity) {
  if (brush.style() == Qt::NoBrush) return Attribute("fill", "none");
  return Paint("fill", brush.color(), opacity);
}

QString Transformation(const QTransform& t) {
  if (t.isIdentity()) return {};
  const QStringList values{Number(t.m11()), Number(t.m12()), Number(t.m21()),
                           Number(t.m22()), Number(t.dx()),  Number(t.dy())};
  return Attribute("transform", "matrix(" + values.join(u' ') + ')');
}

QString FontAttributes(const QFont& font) {
  QStringList families;
  for (const QString& family : font.families()) families += u'\'' + Escaped(family) + u'\'';
  families += "sans-serif";
  const double pixels = font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * 96.0 / 72.0;
  QString text =
      Attribute("font-family", families.join(u',')) + Attribute("font-size", Number(pixels));
  if (font.weight() != QFont::Normal) {
    text += Attribute("font-weight", QString::number(font.weight()));
  }
  if (font.italic()) text += Attribute("font-style", "italic");
  return text;
}

// The data of a path whose first point is moved to `start`.
QString PathData(const QPainterPath& path, QPointF start) {
  if (path.isEmpty()) return {};
  const QPointF move = start - QPointF(path.elementAt(0));
  QString data;
  for (int i = 0; i < path.elementCount(); ++i) {
    const QPainterPath::Element element = path.elementAt(i);
    if (element.type == QPainterPath::MoveToElement) data += 'M';
    if (element.type == QPainterPath::LineToElement) data += 'L';
    if (element.type == QPainterPath::CurveToElement) data += 'C';
    if (element.type == QPainterPath::CurveToDataElement) data += ' ';
    data += Point(element.x + move.x(), element.y + move.y());
  }
  return data;
}

}  // namespace

// Writes elements inside groups. A group bears the style, and one around it the clip, because a
// clip given together with a transformation would be transformed too; elements in a row with the
// same style share their groups.
class SvgEngine : public QPaintEngine {
 public:
  explicit SvgEngine(QSize size)
      : QPaintEngine(AllFeatures &
                     ~(PatternBrush | PerspectiveTransform | ConicalGradientFill | PorterDuff)),
        picture_(QPointF(0, 0), QSizeF(size)) {}

  bool begin(QPaintDevice*) override { return true; }
  bool end() override {
    CloseGroup();
    return true;
  }
  Type type() const override { return User; }

  void updateState(const QPaintEngineState& now) override {
    const DirtyFlags dirty = now.state();
    if (dirty & DirtyPen) pen_ = now.pen();
    if (dirty & DirtyBrush) brush_ = now.brush();
    if (dirty & DirtyTransform) transform_ = now.transform();
    if (dirty & DirtyOpacity) opacity_ = now.opacity();
  }

  // Where it stands goes into the path, so that marks drawn each with a place of their own share
  // a group.
  void drawPath(const QPainterPath& drawn) override {
    const auto [turn, place] = Parted(transform_);
    const QPainterPath path = drawn.translated(place);
    OpenShapeGroup(brush_, turn);
    const bool filled = brush_.style() != Qt::NoBrush;
    if (!filled && path.elementCount() == 2) return AddLine(path.elementAt(0), path.elementAt(1));
    const bool odd = filled && path.fillRule() == Qt::OddEvenFill;
    AddShape(path, odd ? Attribute("fill-rule", "evenodd") : QString(), false);
  }

  void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
    const bool closed = mode != PolylineMode;
    OpenShapeGroup(closed ? brush_ : QBrush(Qt::NoBrush), transform_);
    if (!closed && count == 2) return AddLine(points[0], points[1]);
    QPainterPath path;
    if (count > 0) path.moveTo(points[0]);
    for (int i = 1; i < count; ++i) path.lineTo(points[i]);
    AddShape(path, {}, closed);
  }

  // Anchored in its middle, so that it stays centred in a viewer without the first font.
  void drawTextItem(const QPointF& baseline, const QTextItem& item) override {
    OpenGroup(Paint("fill", pen_.color(), opacity_) + Attribute("stroke", "none") +
              Attribute("text-anchor", "middle") + FontAttributes(item.font()));
    body_ += "<text" + Attribute("x", Number(baseline.x() + item.width() / 2.0)) +
             Attribute("y", Number(baseline.y())) + Attribute("xml:space", "preserve") + '>' +
             Escaped(item.text()) + "</text>\n";
  }

  void drawPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source) override {
    DrawEmbedded(target, pixmap.toImage().copy(source.toRect()));
  }
  void drawImage(const QRectF& target, const QImage& image, const QRectF& source,
                 Qt::ImageConversionFlags) override {
    DrawEmbedded(target, image.copy(source.toRect()));
  }

  const QString& Body() const { return body_; }

 private:
  struct Mark {
    QString name;
    QPointF start;  // of the path that bears the name
  };

  // A shape that comes again is written once and then referred to: figures are full of marks.
  void AddShape(const QPainterPath& path, const QString& rule, bool closed) {
    if (path.isEmpty()) return;
    const QPointF start(path.elementAt(0));
    const QString end = closed ? QStringLiteral("Z") : QString();
    const QString shape = rule + PathData(path, {}) + end;
    const auto known = marks_.find(shape);
    if (known != marks_.end()) {
      const QPointF move = start - known->second.start;
      body_ += "<use" + Attribute("xlink:href", '#' + known->second.name) +
               Attribute("x", Number(move.x())) + Attribute("y", Number(move.y())) + "/>\n";
      return;
    }
    QString name;
    if (shape == lastShape_) {
      name = "mark" + QString::number(marks_.size() + 1);
      marks_[shape] = {name, start};
      name = Attribute("id", name);
    }
    lastShape_ = shape;
    body_ += "<path" + name + rule + Attribute("d", PathData(path, start) + end) + "/>\n";
  }

  // Lines one after the other, of the same look and with nothing shining through, are one path.
  void AddLine(QPointF from, QPointF to) {
    const QPointF along = to - from;
    QString data = 'M' + Point(from.x(), from.y());
    if (along.y() == 0.0) {
      data += 'h' + Number(along.x());
    } else if (along.x() == 0.0) {
      data += 'v' + Number(along.y());
    } else {
      data += 'l' + Point(along.x(), along.y());
    }
    const QLatin1String end("\"/>\n");
    const bool opaque = pen_.color().alphaF() * opacity_ >= 1.0;
    if (opaque && linesEnd_ == body_.size()) {
      body_.chop(end.size());
      body_ += data + end;
    } else {
      body_ += "<path d=\"" + data + end;
    }
    linesEnd_ = body_.size();
  }

  void DrawEmbedded(const QRectF& target, const QImage& image) {
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    OpenGroup(Attribute("opacity", Number(opacity_)));
    body_ += "<image" + Attribute("x", Number(target.x())) + Attribute("y", Number(target.y())) +
             Attribute("width", Number(target.width())) +
             Attribute("height", Number(target.height())) +
             Attribute("preserveAspectRatio", "none") +
             Attribute("xlink:href", "data:image/png;base64," + png.toBase64()) + "/>\n";
  }

  // A transformation as a move and what comes after it.
  static std::pair<QTransform, QPointF> Parted(const QTransform& whole) {
    const QTransform turn(whole.m11(), whole.m12(), whole.m21(), whole.m22(), 0.0, 0.0);
    bool invertible = false;
    const QTransform back = turn.inverted(&invertible);
    if (!invertible || !whole.isAffine()) return {whole, {}};
    return {turn, back.map(QPointF(whole.dx(), whole.dy()))};
  }

  void OpenShapeGroup(const QBrush& brush, const QTransform& transform) {
    OpenGroup(Fill(brush, opacity_) + Stroke(pen_, opacity_), transform);
  }

  void OpenGroup(const QString& style) { OpenGroup(style, transform_); }

  void OpenGroup(const QString& style, const QTransform& transform) {
    const QString clip = ClipAttribute();
    const QString opening = "<g" + clip + "><g" + style + Transformation(transform) + ">\n";
    if (opening == opening_) return;
    CloseGroup();
    body_ += opening;
    opening_ = opening;
  }

  void CloseGroup() {
    if (!opening_.isEmpty()) body_ += "</g></g>\n";
    opening_.clear();
  }

  // The reference to the clip that is in force, which is defined at its first use.
  QString ClipAttribute() {
    if (!painter()->hasClipping()) return {};
    const QRectF clip = transform_.mapRect(painter()->clipBoundingRect());
    if (clip.contains(picture_)) return {};
    std::size_t index = 0;
    while (index < clips_.size() && clips_[index] != clip) ++index;
    const QString name = "clip" + QString::number(index + 1);
    if (index == clips_.size()) {
      clips_.push_back(clip);
      CloseGroup();
      body_ += "<clipPath" + Attribute("id", name) + "><rect" + Attribute("x", Number(clip.x())) +
               Attribute("y", Number(clip.y())) + Attribute("width", Number(clip.width())) +
               Attribute("height", Number(clip.height())) + "/></clipPath>\n";
    }
    return Attribute("clip-path", "url(#" + name + ')');
  }

  QRectF picture_;
  QPen pen_;
  QBrush brush_;
  QTransform transform_;
  double opacity_ = 1.0;
  QString body_;
  QString opening_;  // the tags of the open groups; empty outside
  std::vector<QRectF> clips_;
  std::map<QString, Mark> marks_;  // by their data from a start at 0, 0
  QString lastShape_;
  qsizetype linesEnd_ = -1;  // of body_ behind lines that others may join
};

SvgDevice::SvgDevice(QSize size, QString title, QSizeF millimetres)
    : size_(size),
      title_(std::move(title)),
      millimetres_(millimetres),
      engine_(std::make_unique<SvgEngine>(size)) {}

SvgDevice::~SvgDevice() = default;

QPaintEngine* SvgDevice::paintEngine() const {
  return engine_.get();
}

QByteArray SvgDevice::Document() const {
  const QString width = QString::number(size_.width());
  const QString height = QString::number(size_.height());
  const bool onPaper = millimetres_.isValid();
  const auto extent = [&](double millimetres, const QString& units) {
    return onPaper ? QString::number(millimetres) + "mm" : units;
  };
  const QString head =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\"" +
      Attribute("version", "1.1") + Attribute("width", extent(millimetres_.width(), width)) +
      Attribute("height", extent(millimetres_.height(), height)) +
      Attribute("viewBox", "0 0 " + width + ' ' + height) + ">\n<title>" + Escaped(title_) +
      "</title>\n";
  return (head + engine_->Body() + "</svg>\n").toUtf8();
}

int SvgDevice::metric(PaintDeviceMetric metric) const {
  constexpr double kDotsPerInch = 96.0;
  switch (metric) {
    case PdmWidth:
      return size_.width();
    case PdmHeight:
      return size_.height();
    case PdmWidthMM:
      return static_cast<int>(std::lround(size_.width() * 25.4 / kDotsPerInch));
    case PdmHeightMM:
      return static_cast<int>(std::lround(size_.height() * 25.4 / kDotsPerInch));
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
      return static_cast<int>(kDotsPerInch);
    case PdmNumColors:
      return 1 << 24;
    case PdmDepth:
      return 24;
    case PdmDevicePixelRatio:
      return 1;
    case PdmDevicePixelRatioScaled:
      return static_cast<int>(devicePixelRatioFScale());
    default:
      return QPaintDevice::metric(metric);
  }
}

}  // namespace quorvane

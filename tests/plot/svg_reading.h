// Reads SVG files back for tests.
#pragma once

#include <QMap>
#include <QRectF>
#include <QString>
#include <QXmlStreamReader>
#include <vector>

namespace quorvane {

struct SvgElement {
  QString name;       // "text", "path", "image"
  QString content;    // a text's characters, a path's data
  QString stroke;     // and
  QString transform;  // of the group around it
  QString clip;       // reference to the clip in force, or empty
};

struct SvgFile {
  QString error;  // empty for well-formed XML
  QMap<QString, QRectF> clips;
  std::vector<SvgElement> elements;

  const SvgElement* FindText(const QString& text) const {
    for (const SvgElement& element : elements) {
      if (element.name == QLatin1String("text") && element.content == text) return &element;
    }
    return nullptr;
  }
};

inline SvgFile ReadSvg(const QByteArray& bytes) {
  SvgFile file;
  QXmlStreamReader xml(bytes);
  SvgElement group;
  QString clip;
  while (!xml.atEnd()) {
    if (xml.readNext() != QXmlStreamReader::StartElement) continue;
    const QString name = xml.name().toString();
    const auto value = [&](const char* key) {
      return xml.attributes().value(QLatin1String(key)).toString();
    };
    if (name == QLatin1String("clipPath")) {
      clip = "url(#" + value("id") + ')';
    } else if (name == QLatin1String("rect")) {
      file.clips[clip] = QRectF(value("x").toDouble(), value("y").toDouble(),
                                value("width").toDouble(), value("height").toDouble());
    } else if (name == QLatin1String("g")) {
      if (value("fill").isEmpty()) group.clip = value("clip-path");  // the outer one of two
      group.stroke = value("stroke");
      group.transform = value("transform");
    } else if (name != QLatin1String("svg") && name != QLatin1String("title")) {
      const QString data = value("d");
      file.elements.push_back(group);
      file.elements.back().name = name;
      file.elements.back().content = name == QLatin1String("text") ? xml.readElementText() : data;
    }
  }
  file.error = xml.errorString();
  return file;
}

}  // namespace quorvane

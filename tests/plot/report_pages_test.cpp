// Faults caught here: a title of a report that is on no page.
#include "plot/report_pages.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QtEndian>

using namespace quorvane;

namespace {

// How often something is written on the pages of a PDF.
qsizetype CountTexts(const std::string& pdf) {
  qsizetype texts = 0;
  const QByteArray bytes = QByteArray::fromStdString(pdf);
  const QByteArray begin = "stream\n";
  for (qsizetype at = bytes.indexOf(begin); at >= 0; at = bytes.indexOf(begin, at + 1)) {
    if (bytes.mid(at - 3, 3) == "end") continue;
    const qsizetype end = bytes.indexOf("endstream", at);
    QByteArray packed(4, '\0');  // the size that qUncompress begins with
    qToBigEndian<quint32>(1U << 20U, packed.data());
    texts +=
        qUncompress(packed + bytes.mid(at + begin.size(), end - at - begin.size())).count("BT\n");
  }
  return texts;
}

std::string Tables(int count, const char* title) {
  std::string body;
  for (int table = 0; table < count; ++table) {
    if (table % 5 == 0) body += "<h2>" + std::string(title) + "</h2><ul><li>remark</li></ul>";
    body += "<div><table><caption>" + std::string(title) +
            "</caption><thead><tr><th>a</th></tr></thead><tbody>";
    for (int row = 0; row < 3 + table % 7; ++row) body += "<tr><td>1.5</td></tr>";
    body += "</tbody></table></div>";
  }
  return body;
}

// One that moves to the next page is painted on the page before too, where it is clipped.
TEST(RenderReportPages, WritesEveryTitle) {
  constexpr int kTables = 40;
  const auto texts = [](const char* title) {
    return CountTexts(RenderReportPages("", Tables(kTables, title), {}, {}));
  };
  EXPECT_GE(texts("title") - texts(""), kTables + kTables / 5);
}

}  // namespace

// Faults caught here: a report offered without a fit or lost with the datasets, text of a file that
// becomes markup, a document that a reader of XML refuses, a PDF without pages, a failure that
// nobody is told.
#include <QXmlStreamReader>

#include "core/report/paper_report.h"
#include "core/report/report_html.h"
#include "fit/models.h"
#include "plot/report_pages.h"
#include "windows/main_window_fixture.h"

using namespace quorvane;

namespace {

// The texts of a well-formed document by element, such as "td"; fails on any other.
QMultiMap<QString, QString> Texts(const std::string& html) {
  QMultiMap<QString, QString> texts;
  QXmlStreamReader reader(QString::fromStdString(html));
  QStringList open;
  while (!reader.atEnd()) {
    reader.readNext();
    if (reader.isStartElement()) open.push_back(reader.name().toString());
    if (reader.isEndElement()) open.pop_back();
    if (reader.isCharacters() && !open.isEmpty())
      texts.insert(open.last(), reader.text().toString());
  }
  EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
  return texts;
}

int PagesOf(const std::string& pdf) {
  return static_cast<int>(QByteArray::fromStdString(pdf).count("/Type /Page\n"));
}

PaperReport HostileReport() {
  const std::string hostile = "<script>\"&\x01</td>";
  PaperReport report{.title = hostile, .origin = hostile, .sections = {}, .charts = {}};
  ReportTable table{.title = hostile, .head = {hostile, "b"}, .rows = {{hostile, {hostile, true}}}};
  for (const Model& model : Models()) {
    table.rows.push_back({{std::string(model.reaction.equation), true},
                          {std::string(model.reaction.constants), true}});
  }
  report.sections = {{hostile, {hostile}, {table}}};
  report.charts = {{hostile, hostile, {{hostile, 1.0, {{hostile, {}, 0, {1, 2}, {1, 2}}}, {}}}}};
  return report;
}

TEST(ReportHtml, EscapesWhatItIsGiven) {
  const PaperReport report = HostileReport();
  const std::string html = ReportHtml(report, [](const Chart& chart) {
    return RenderChart(chart, PictureFormat::kSvg, kReportChart);
  });
  const auto texts = Texts(html);
  EXPECT_EQ(html.find("<script"), std::string::npos);
  for (const char* element : {"title", "h1", "h2", "p", "caption", "th", "td"}) {
    EXPECT_TRUE(texts.contains(element, "<script>\"&</td>")) << element;
  }
  EXPECT_NE(html.find("<td>n A \u21cc A<sub>n</sub>, A<sub>n</sub> + B \u21cc A<sub>n</sub>B</td>"),
            std::string::npos);
  EXPECT_NE(html.find("K<sub>i</sub> = [A<sub>i+1</sub>]/[A<sub>i</sub>][A]"), std::string::npos);
  const std::string link = "base64,";
  const std::size_t from = html.find(link) + link.size();
  const QByteArray picture = QByteArray::fromBase64(
      QByteArray::fromStdString(html.substr(from, html.find('"', from) - from)),
      QByteArray::AbortOnBase64DecodingErrors);
  EXPECT_EQ(picture.toStdString(),
            RenderChart(report.charts[0], PictureFormat::kSvg, kReportChart));
}

// A title of a table never stands alone at the foot of a page, whatever stands before it.
TEST(RenderReportPages, FlowsOverAsManyPagesAsItNeeds) {
  PaperReport report = HostileReport();
  auto& rows = report.sections[0].tables[0].rows;
  while (rows.size() < 400) rows.push_back(rows[1]);
  const std::vector<Chart> charts(9, report.charts[0]);
  const int text = PagesOf(RenderReportPages("t", ReportBody(report), {}));
  EXPECT_GE(text, 6);
  EXPECT_EQ(PagesOf(RenderReportPages("t", ReportBody(report), charts)), text + 2);
}

class SaveReportTest : public MainWindowTest {};

TEST_F(SaveReportTest, WritesBothFormatsOfTheLastFinishedFit) {
  auto* action = Find<QAction>("mnuSaveReport");
  EXPECT_FALSE(action->isEnabled());
  SetUpExample();
  EXPECT_FALSE(action->isEnabled());
  Click("cmdFitMe");
  const std::size_t sets = session.Module.LastFit->datasets.size();
  dialogs.files = {ToQString(folder / "fit.html"), ToQString(folder / "fit.pdf"), ""};
  Trigger("mnuSaveReport");
  const std::string html = ReadText(folder / "fit.html");
  Texts(html);
  EXPECT_EQ(QByteArray::fromStdString(html).count("<img "), static_cast<qsizetype>(sets));
  // The report outlives the datasets, until another experiment begins.
  session.Module.Store.Datasets.clear();
  session.Module.Store.UseData.clear();
  Trigger("mnuSaveReport");
  EXPECT_GE(PagesOf(ReadText(folder / "fit.pdf")), 3);
  Trigger("mnuSaveReport");  // cancelled
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_EQ(dialogs.requests.back().filter.count(";;"), 1);
  dialogs.files = {ToQString(folder / "none" / "fit.pdf")};
  Trigger("mnuSaveReport");
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_TRUE(dialogs.messages[0].text.contains("fit.pdf"));
  dialogs.yesNo = {true};
  Trigger("mnuFileNew");
  EXPECT_FALSE(action->isEnabled());
}

}  // namespace

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
  PaperReport report{.title = hostile,
                     .origin = hostile,
                     .sections = {},
                     .figure = {},
                     .figureCaption = hostile,
                     .charts = {}};
  report.figure.cells.resize(2);
  ReportTable table{.title = hostile, .head = {hostile, "b"}, .rows = {{hostile, {hostile, true}}}};
  for (const Model& model : Models()) {
    table.rows.push_back({{std::string(model.reaction.equation), true},
                          {std::string(model.reaction.constants), true}});
  }
  report.sections = {{hostile, {hostile}, {table}, {hostile}, true}};
  report.charts = {{hostile, hostile, {{hostile, 1.0, {{hostile, {}, 0, {1, 2}, {1, 2}}}, {}}}}};
  return report;
}

TEST(ReportHtml, EscapesWhatItIsGiven) {
  const PaperReport report = HostileReport();
  const std::string html = ReportHtml(report, {RenderReportChart, RenderReportFigure});
  const auto texts = Texts(html);
  EXPECT_EQ(html.find("<script"), std::string::npos);
  for (const char* element : {"title", "h1", "h2", "p", "li", "caption", "th", "td"}) {
    EXPECT_TRUE(texts.contains(element, "<script>\"&</td>")) << element;
  }
  EXPECT_NE(html.find("<td>n A \u21cc A<sub>n</sub>, A<sub>n</sub> + B \u21cc A<sub>n</sub>B</td>"),
            std::string::npos);
  EXPECT_NE(html.find("K<sub>i</sub> = [A<sub>i+1</sub>]/[A<sub>i</sub>][A]"), std::string::npos);
  const QStringList links = QString::fromStdString(html).split(QStringLiteral("base64,"));
  std::vector<std::string> pictures;
  for (const QString& link : links.mid(1)) {
    const QByteArray bytes = link.left(link.indexOf(u'"')).toLatin1();
    pictures.push_back(
        QByteArray::fromBase64(bytes, QByteArray::AbortOnBase64DecodingErrors).toStdString());
  }
  EXPECT_EQ(pictures,
            (std::vector{RenderReportFigure(report.figure), RenderReportChart(report.charts[0])}));
}

TEST(ReportHtml, PutsDecimalPointsBelowEachOther) {
  PaperReport report = HostileReport();
  report.sections[0].tables = {
      {.title = "", .head = {"a", "b"}, .rows = {{"-3.25", "12"}, {"held", "word of a sentence"}}}};
  const std::string html = ReportBody(report, "");
  EXPECT_NE(html.find("<span style=\"min-width:2ch\">-3</span>.25</td><td>12</td>"),
            std::string::npos);
}

// A title of a table never stands alone at the foot of a page, whatever stands before it.
TEST(RenderReportPages, FlowsOverAsManyPagesAsItNeeds) {
  PaperReport report = HostileReport();
  auto& rows = report.sections[0].tables[0].rows;
  while (rows.size() < 400) rows.push_back(rows[1]);
  const std::vector<Chart> charts(9, report.charts[0]);
  const std::string body = ReportBody(report, kFigureImage);
  const auto pages = [&](const std::vector<Chart>& shown) {
    return RenderReportPages("t", body, report.figure, shown);
  };
  const int text = PagesOf(pages({}));
  EXPECT_GE(text, 6);
  EXPECT_EQ(PagesOf(pages(charts)), text + 2);
  // The figure is drawn in its place.
  const std::size_t without = pages({}).size();
  for (FigureCell& cell : report.figure.cells) {
    cell.series = {{.name = "made", .curve = {{1, 2, 3}, {1, 4, 2}}}};
  }
  EXPECT_GT(pages({}).size(), without + 100);
  EXPECT_EQ(PagesOf(pages({})), text);
}

class SaveReportTest : public MainWindowTest {};

TEST_F(SaveReportTest, WritesBothFormatsOfTheLastFinishedFit) {
  auto* action = Find<QAction>("mnuSaveReport");
  EXPECT_FALSE(action->isEnabled());
  SetUpExample();
  EXPECT_FALSE(action->isEnabled());
  Click("cmdFitMe");
  const std::size_t sets = session.Module.LastFit->datasets.size();
  Click("cmdFitMe");
  session.Module.Fits.MarkCompared({0, 1});
  dialogs.files = {ToQString(folder / "fit.html"), ToQString(folder / "fit.pdf"), ""};
  Trigger("mnuSaveReport");
  const std::string html = ReadText(folder / "fit.html");
  EXPECT_TRUE(Texts(html).contains("th", "Fit 2 (this report)"));
  EXPECT_EQ(QByteArray::fromStdString(html).count("<img "), static_cast<qsizetype>(sets + 1));
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

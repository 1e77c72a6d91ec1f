#include "core/report/report_html.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <optional>
#include <string_view>

#include "base/number_column.h"
#include "base/number_format.h"

namespace quorvane {

namespace {

constexpr std::size_t kLongestWord = 32;  // a longer one, as a digest, is broken anywhere
constexpr std::size_t kShortTable = 24;   // rows that stay on one page

constexpr const char* kStyle =
    "@page{size:A4;margin:18mm 16mm}\n"
    "*{box-sizing:border-box}\n"
    "body{font:11pt/1.45 'Liberation Sans',Arial,Helvetica,sans-serif;color:#1a1a1a;"
    "background:#fff;max-width:56em;margin:2em auto;padding:0 1.5em}\n"
    "h1{font-size:1.6em;line-height:1.25;margin:0}"
    "h2{font-size:1.25em;margin:1.8em 0 .6em;border-bottom:1px solid #888;break-after:avoid}\n"
    "p,li{max-width:46em;overflow-wrap:break-word}ul{padding-left:1.3em}li{margin:.25em 0}\n"
    ".origin{color:#555;margin:.2em 0 1.5em}\n"
    ".table,figure p{overflow-x:auto}.table{margin:1.2em 0}\n"
    "p img{width:calc(100%*var(--share,1));min-width:calc(38em*var(--share,1))}\n"
    "table{border-collapse:collapse;font-size:.85em;width:100%;"
    "font-variant-numeric:tabular-nums}\n"
    "caption{text-align:left;font-weight:bold;padding-bottom:.3em;break-after:avoid}\n"
    "th,td{padding:.22em .6em;text-align:left;vertical-align:top}\n"
    "td{overflow-wrap:break-word}td.long{overflow-wrap:anywhere;min-width:12em}"
    "td.number{white-space:nowrap}\n"
    "td span{display:inline-block;text-align:right}\n"
    "thead th{border-top:1.5px solid #333;border-bottom:1px solid #333;vertical-align:bottom}\n"
    "tbody tr:last-child>*{border-bottom:1px solid #333}\n"
    "tbody th{font-weight:normal;color:#444;width:38%}\n"
    "table.facts{border-top:1.5px solid #333}\n"
    "tr,figure,table.short{break-inside:avoid}\n"
    ".plots{display:grid;gap:1.2em;"
    "grid-template-columns:repeat(auto-fit,minmax(min(100%,19em),1fr))}\n"
    "figure{margin:1.2em 0}.plots figure{margin:0}figure p{margin:0;max-width:none}"
    "figcaption{font-size:.9em;margin-top:.5em}img{display:block;width:100%;height:auto}\n"
    "@media print{body{max-width:none;margin:0;padding:0;font-size:10pt}"
    "p,li{max-width:none}p{orphans:3;widows:3}.table,figure p{overflow:visible}"
    "p img{min-width:0;max-height:215mm;object-fit:contain}"
    ".plots{grid-template-columns:1fr 1fr}}\n";

// Characters below 32 but TAB and line ends are unknown to XML.
std::string Escaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        if (static_cast<unsigned char>(c) >= ' ' || c == '\n' || c == '\t') out += c;
    }
  }
  return out;
}

// The length of the letter, number or parenthesis at the front of `text`.
std::size_t ScriptLength(std::string_view text) {
  if (text.starts_with('(')) {
    const std::size_t end = text.find(')');
    return end == std::string_view::npos ? text.size() : end + 1;
  }
  std::size_t length = 0;
  while (length < text.size() && std::isdigit(static_cast<unsigned char>(text[length])) != 0) {
    ++length;
  }
  return length > 0 ? length : std::min<std::size_t>(1, text.size());
}

std::string Script(const char* tag, std::string_view text) {
  if (text.starts_with('(')) text = text.substr(1, text.size() - 2);
  return "<" + std::string(tag) + ">" + Escaped(text) + "</" + tag + ">";
}

std::string FormulaHtml(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    if (text.starts_with("<->")) {
      out += "\u21cc";
      text.remove_prefix(3);
    } else if (text.front() == '_' || text.front() == '^') {
      const char* tag = text.front() == '_' ? "sub" : "sup";
      text.remove_prefix(1);
      const std::size_t length = ScriptLength(text);
      out += Script(tag, text.substr(0, length));
      text.remove_prefix(length);
    } else {
      out += Escaped(text.substr(0, 1));
      text.remove_prefix(1);
    }
  }
  return out;
}

std::string CellHtml(const ReportText& cell) {
  return cell.formula ? FormulaHtml(cell.text) : Escaped(cell.text);
}

bool HasLongWord(std::string_view text) {
  std::size_t length = 0;
  for (const char c : text) {
    length = c == ' ' ? 0 : length + 1;
    if (length > kLongestWord) return true;
  }
  return false;
}

// For each column of numbers, the letters before the decimal point that it has room for.
std::vector<std::optional<std::size_t>> PlacesOfPoints(const ReportTable& table) {
  std::vector<std::optional<std::size_t>> places;
  for (std::size_t k = 0; k < table.head.size(); ++k) {
    std::vector<std::string_view> cells;
    for (const std::vector<ReportText>& row : table.rows) cells.push_back(row[k].text);
    places.push_back(PlaceOfPoints(cells));
  }
  return places;
}

// A cell of a column of numbers; what stands before the decimal point fills `width` letters.
std::string NumberCell(const std::string& text, std::size_t width) {
  const std::optional<std::size_t> point = PlaceOfPoint(text);
  if (!point) return "<td class=\"number\">" + Escaped(text) + "</td>";
  return "<td class=\"number\"><span style=\"min-width:" + std::to_string(width) + "ch\">" +
         Escaped(text.substr(0, *point)) + "</span>" + Escaped(text.substr(*point)) + "</td>";
}

std::string RowHtml(const std::vector<ReportText>& row, bool facts,
                    const std::vector<std::optional<std::size_t>>& places) {
  std::string out = "<tr>";
  for (std::size_t k = 0; k < row.size(); ++k) {
    if (facts && k == 0) {
      out += "<th class=\"name\" scope=\"row\">" + CellHtml(row[k]) + "</th>";
    } else if (!facts && places[k]) {
      out += NumberCell(row[k].text, *places[k]);
    } else {
      out += HasLongWord(row[k].text) ? "<td class=\"long\">" : "<td>";
      out += CellHtml(row[k]) + "</td>";
    }
  }
  return out + "</tr>\n";
}

std::string TableHtml(const ReportTable& table) {
  const bool facts = table.head.empty();
  std::string kind = facts ? "facts" : "";
  if (table.rows.size() <= kShortTable) kind += facts ? " short" : "short";
  std::string out = "<div class=\"table\"><table class=\"" + kind + "\"><caption>" +
                    Escaped(table.title) + "</caption>\n";
  if (!facts) {
    out += "<thead><tr>";
    for (const std::string& head : table.head) {
      out += "<th scope=\"col\">" + Escaped(head) + "</th>";
    }
    out += "</tr></thead>\n";
  }
  out += "<tbody>\n";
  const auto places = PlacesOfPoints(table);
  for (const std::vector<ReportText>& row : table.rows) out += RowHtml(row, facts, places);
  return out + "</tbody></table></div>\n";
}

std::string ListHtml(const std::vector<std::string>& items) {
  if (items.empty()) return "";
  std::string out = "<ul>\n";
  for (const std::string& item : items) out += "<li>" + Escaped(item) + "</li>\n";
  return out + "</ul>\n";
}

// The width of a figure in that of a page, at most 1.
std::string ShareOfPage(const Figure& figure) {
  return FormatNumber(std::min(figure.width / kFigurePageWidth, 1.0), "0.###");
}

std::string Base64(std::string_view bytes) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    std::uint32_t group = 0;
    for (std::size_t k = at; k < at + 3; ++k) {
      group = group << 8U | (k < bytes.size() ? static_cast<unsigned char>(bytes[k]) : 0U);
    }
    const std::size_t digits = std::min<std::size_t>(4, bytes.size() - at + 1);
    for (std::size_t k = 0; k < 4; ++k) {
      out += k < digits ? kDigits[group >> (18 - 6 * k) & 0x3F] : '=';
    }
  }
  return out;
}

// Pictures stand in data links: the names that an SVG gives its parts would meet in one document.
std::string SvgLink(const std::string& svg) {
  return "data:image/svg+xml;base64," + Base64(svg);
}

}  // namespace

std::string ReportBody(const PaperReport& report, const std::string& figure) {
  std::string out = "<h1>" + Escaped(report.title) + "</h1>\n<p class=\"origin\">" +
                    Escaped(report.origin) + "</p>\n";
  for (const ReportSection& section : report.sections) {
    out += "<h2>" + Escaped(section.title) + "</h2>\n";
    if (section.figure) {
      out += "<figure><p><img alt=\"" + Escaped(report.figureCaption) +
             "\" style=\"--share:" + ShareOfPage(report.figure) + "\" src=\"" + figure +
             "\" /></p>\n<figcaption><p>" + Escaped(report.figureCaption) +
             "</p></figcaption></figure>\n";
    }
    for (const std::string& text : section.paragraphs) out += "<p>" + Escaped(text) + "</p>\n";
    out += ListHtml(section.list);
    for (const ReportTable& table : section.tables) out += TableHtml(table);
  }
  return out;
}

std::string ReportHtml(const PaperReport& report, const ReportPictures& pictures) {
  std::string out =
      "<!DOCTYPE html>\n<html lang=\"en\" xmlns=\"http://www.w3.org/1999/xhtml\">\n<head>\n"
      "<meta charset=\"utf-8\" />\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\" />\n"
      "<meta name=\"color-scheme\" content=\"light\" />\n<title>" +
      Escaped(report.title) + "</title>\n<style>\n" + kStyle + "</style>\n</head>\n<body>\n" +
      ReportBody(report, SvgLink(pictures.figure(report.figure)));
  if (!report.charts.empty()) out += "<h2>Plots</h2>\n<div class=\"plots\">\n";
  for (const Chart& chart : report.charts) {
    out += "<figure><img alt=\"" + Escaped(chart.title) + "\" width=\"600\" height=\"540\" src=\"" +
           SvgLink(pictures.chart(chart)) + "\" /></figure>\n";
  }
  if (!report.charts.empty()) out += "</div>\n";
  return out + "</body>\n</html>\n";
}

}  // namespace quorvane

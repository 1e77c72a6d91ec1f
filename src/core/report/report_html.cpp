#include "core/report/report_html.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <string_view>

namespace quorvane {

namespace {

constexpr const char* kStyle =
    "@page{size:A4;margin:18mm 16mm}\n"
    "body{font:11pt/1.45 'Liberation Sans',Arial,Helvetica,sans-serif;color:#1a1a1a;"
    "background:#fff;max-width:56em;margin:2em auto;padding:0 1.5em}\n"
    "h1{font-size:1.6em;margin:0}h2{font-size:1.25em;margin:1.8em 0 .4em;"
    "border-bottom:1px solid #888;break-after:avoid}\n"
    ".origin{color:#555;margin:.2em 0 1.5em}\n"
    "table{border-collapse:collapse;margin:1.1em 0;font-size:.85em;width:100%;"
    "font-variant-numeric:tabular-nums}\n"
    "caption{text-align:left;font-weight:bold;padding-bottom:.3em;break-after:avoid}\n"
    "th,td{padding:.22em .6em;text-align:left;vertical-align:top;overflow-wrap:anywhere}\n"
    "thead th{border-top:1.5px solid #333;border-bottom:1px solid #333;vertical-align:bottom}\n"
    "tbody tr:last-child>*{border-bottom:1px solid #333}\n"
    "tbody th{font-weight:normal;color:#444;width:32%}\n"
    "table.facts{border-top:1.5px solid #333}\n"
    "tr,figure{break-inside:avoid}\n"
    ".plots{display:grid;grid-template-columns:1fr 1fr;gap:1.2em}\n"
    "figure{margin:0}figure img{width:100%;height:auto}\n"
    "@media print{body{max-width:none;margin:0;padding:0;font-size:10pt}}\n";

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

std::string TableHtml(const ReportTable& table) {
  const bool facts = table.head.empty();
  std::string out = facts ? "<table class=\"facts\">" : "<table>";
  out += "<caption>" + Escaped(table.title) + "</caption>\n";
  if (!facts) {
    out += "<thead><tr>";
    for (const std::string& head : table.head) {
      out += "<th scope=\"col\">" + Escaped(head) + "</th>";
    }
    out += "</tr></thead>\n";
  }
  out += "<tbody>\n";
  for (const std::vector<ReportText>& row : table.rows) {
    out += "<tr>";
    for (std::size_t k = 0; k < row.size(); ++k) {
      const bool name = facts && k == 0;
      out += (name ? "<th scope=\"row\">" : "<td>") + CellHtml(row[k]) + (name ? "</th>" : "</td>");
    }
    out += "</tr>\n";
  }
  return out + "</tbody></table>\n";
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

}  // namespace

std::string ReportBody(const PaperReport& report) {
  std::string out = "<h1>" + Escaped(report.title) + "</h1>\n<p class=\"origin\">" +
                    Escaped(report.origin) + "</p>\n";
  for (const ReportSection& section : report.sections) {
    out += "<h2>" + Escaped(section.title) + "</h2>\n";
    for (const std::string& text : section.paragraphs) out += "<p>" + Escaped(text) + "</p>\n";
    for (const ReportTable& table : section.tables) out += TableHtml(table);
  }
  return out;
}

// Pictures stand in data links: the names that an SVG gives its parts would meet in one document.
std::string ReportHtml(const PaperReport& report,
                       const std::function<std::string(const Chart&)>& picture) {
  std::string out =
      "<!DOCTYPE html>\n<html lang=\"en\" xmlns=\"http://www.w3.org/1999/xhtml\">\n<head>\n"
      "<meta charset=\"utf-8\" />\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\" />\n"
      "<meta name=\"color-scheme\" content=\"light\" />\n<title>" +
      Escaped(report.title) + "</title>\n<style>\n" + kStyle + "</style>\n</head>\n<body>\n" +
      ReportBody(report) + "<h2>Plots</h2>\n<div class=\"plots\">\n";
  for (const Chart& chart : report.charts) {
    out += "<figure><img alt=\"" + Escaped(chart.title) +
           "\" width=\"600\" height=\"540\" src=\"data:image/svg+xml;base64," +
           Base64(picture(chart)) + "\" /></figure>\n";
  }
  return out + "</div>\n</body>\n</html>\n";
}

}  // namespace quorvane

// What a report is made of: sections of paragraphs and tables, without a form.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace quorvane {

// UTF-8. A formula is written as Reaction (fit/models.h) says.
struct ReportText {
  ReportText(std::string plain = {}, bool isFormula = false)
      : text(std::move(plain)), formula(isFormula) {}
  ReportText(const char* plain) : text(plain) {}

  std::string text;
  bool formula = false;
};

struct ReportTable {
  std::string title;
  std::vector<std::string> head;  // empty: a list of names, each with what there is to say
  std::vector<std::vector<ReportText>> rows;  // each with as many cells
};

struct ReportSection {
  std::string title;
  std::vector<std::string> paragraphs;
  std::vector<ReportTable> tables;
  std::vector<std::string> list = {};  // remarks, each by itself, behind the paragraphs
  bool figure = false;                 // whether the figure of the report stands here, first
};

}  // namespace quorvane

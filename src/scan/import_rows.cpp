#include "scan/import_rows.h"

#include <algorithm>
#include <cmath>

#include "base/text.h"
#include "scan/dataset.h"

namespace quorvane {

namespace {

constexpr double kLeastRadius = 1.0;  // cm
constexpr double kMostRadius = 20.0;

bool Within(double value, double low, double high) {
  return value >= low && value <= high;
}

// At most 30 characters of a field, for a message.
std::string Quoted(const std::string& field) {
  constexpr std::size_t kMost = 30;
  return '"' + (field.size() > kMost ? field.substr(0, kMost) + "..." : field) + '"';
}

class RowReading {
 public:
  RowReading(const std::vector<std::string>& lines, TextImport& result)
      : lines_(lines), result_(result) {}

  void Run() {
    ReadRows();
    CheckRows();
  }

 private:
  void Fail(ImportState state, std::string fault) {
    result_.state = state;
    result_.fault = std::move(fault);
  }
  void Remark(std::string sentence) { result_.remarks.push_back(std::move(sentence)); }

  void ReadRows() {
    std::size_t remarks = 0;
    for (std::size_t k = result_.skipped; k < lines_.size(); ++k) {
      if (Trim(lines_[k]).empty()) continue;
      if (!IsRow(lines_[k])) {
        ++remarks;
        continue;
      }
      ImportedRow row{k + 1};
      std::string reason = ReadRow(FieldsOf(lines_[k], result_.form.separator), row);
      if (reason.empty()) {
        result_.rows.push_back(row);
      } else {
        result_.unreadable.push_back({k + 1, std::move(reason)});
      }
    }
    if (remarks > 0) Remark(Counted(remarks, "line") + " among the rows hold remarks or nothing.");
  }

  // Why the row cannot be read; empty if it was.
  std::string ReadRow(const std::vector<std::string>& fields, ImportedRow& row) {
    if (fields.size() > static_cast<std::size_t>(result_.width)) {
      return "has " + std::to_string(fields.size()) + " columns, the others have " +
             std::to_string(result_.width);
    }
    const ImportColumns& columns = result_.columns;
    std::string fault;
    const auto number = [&](int column, const char* name) {
      const auto place = static_cast<std::size_t>(column) - 1;
      const std::string field = place < fields.size() ? fields[place] : "";
      const std::optional<double> value = NumberOf(field, result_.form.decimal);
      if (!value && fault.empty()) {
        fault = std::string(name) +
                (field.empty() ? " is missing" : " " + Quoted(field) + " is no number");
      }
      return value.value_or(0.0);
    };
    row.r = number(columns.radius, "radius");
    row.c = number(columns.signal, "signal");
    if (columns.error) row.err = number(*columns.error, "standard deviation");
    const double reference = columns.reference ? number(*columns.reference, "reference") : 1.0;
    if (!fault.empty()) return fault;
    if (!Within(row.r, kLeastRadius, kMostRadius)) {
      outside_.Take(row.r);
      return "radius " + ShortestText(row.r) + " lies outside 1 to 20 cm";
    }
    return columns.reference ? ToAbsorbance(reference, row) : "";
  }

  // Absorbance from intensities, with the error that the one of the signal becomes.
  static std::string ToAbsorbance(double reference, ImportedRow& row) {
    for (const double intensity : {row.c, reference}) {
      if (!(intensity > 0.0)) return "intensity " + ShortestText(intensity) + " is not above 0";
    }
    row.err /= row.c * std::log(10.0);
    row.c = std::log10(reference / row.c);
    return std::isfinite(row.c) && std::isfinite(row.err) ? "" : "the intensities have no ratio";
  }

  void CheckRows() {
    const std::size_t rows = result_.rows.size();
    if (outside_.count > rows) {
      Fail(ImportState::kNoScan, "the radii in column " + std::to_string(result_.columns.radius) +
                                     " go from " + ShortestText(outside_.low) + " to " +
                                     ShortestText(outside_.high) +
                                     "; a radius lies between 1 and 20 cm");
    } else if (rows == 0) {
      const std::string first = result_.unreadable.empty()
                                    ? ""
                                    : ": line " + std::to_string(result_.unreadable[0].line) +
                                          ", " + result_.unreadable[0].reason;
      Fail(ImportState::kUnreadable, "no row can be read" + first);
    } else if (rows > static_cast<std::size_t>(kMaxPoints)) {
      Fail(ImportState::kNoScan, "there are " + std::to_string(rows) +
                                     " rows; a scan holds at most " + std::to_string(kMaxPoints));
    } else {
      if (rows < static_cast<std::size_t>(kMinPoints)) {
        Remark("Only " + Counted(rows, "row") + ": a dataset needs " + std::to_string(kMinPoints) +
               ".");
      }
      Sort();
      RemarkDeleted();
    }
  }

  void Sort() {
    std::vector<ImportedRow>& rows = result_.rows;
    std::size_t falls = 0;
    double deepest = 0.0;
    std::size_t deepestLine = 0;
    const auto [least, most] =
        std::minmax_element(rows.begin(), rows.end(),
                            [](const ImportedRow& a, const ImportedRow& b) { return a.r < b.r; });
    const double range = most->r - least->r;
    for (std::size_t k = 1; k < rows.size(); ++k) {
      const double fall = rows[k - 1].r - rows[k].r;
      if (fall > 0.0) ++falls;
      if (fall > deepest) deepestLine = rows[k].line;
      deepest = std::max(deepest, fall);
    }
    if (falls == 0) return;
    const bool falling = falls * 2 > rows.size() - 1;
    if (!falling && deepest > range / 2.0) {
      Fail(ImportState::kNoScan, "the radii begin again in line " + std::to_string(deepestLine) +
                                     ": more than one scan stands in the text");
      return;
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const ImportedRow& a, const ImportedRow& b) { return a.r < b.r; });
    Remark(falling ? "The radii fall: the rows are written in rising order."
                   : "The radii do not all rise: the rows are written in rising order.");
  }

  void RemarkDeleted() {
    const auto deleted = std::count_if(result_.rows.begin(), result_.rows.end(),
                                       [](const ImportedRow& row) { return row.err < 0.0; });
    if (deleted == 0) return;
    Remark(Counted(static_cast<std::size_t>(deleted), "row") +
           " with a negative standard deviation: such a point is loaded as a deleted one.");
  }

  // Radii that cannot be.
  struct Outside {
    std::size_t count = 0;
    double low = 0.0;
    double high = 0.0;
    void Take(double r) {
      low = count == 0 ? r : std::min(low, r);
      high = count == 0 ? r : std::max(high, r);
      ++count;
    }
  };

  const std::vector<std::string>& lines_;
  TextImport& result_;
  Outside outside_;
};

}  // namespace

std::string RangesText(const std::vector<std::size_t>& numbers) {
  std::string text;
  for (std::size_t k = 0; k < numbers.size();) {
    std::size_t last = k;
    while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1) ++last;
    text += (text.empty() ? "" : ", ") + std::to_string(numbers[k]);
    if (last > k) text += "-" + std::to_string(numbers[last]);
    k = last + 1;
  }
  return text;
}

std::string Counted(std::size_t count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

void ReadImportRows(const std::vector<std::string>& lines, TextImport& import) {
  RowReading(lines, import).Run();
}

}  // namespace quorvane

#include "scan/import_header.h"

#include <algorithm>

#include "base/files.h"
#include "base/text.h"
#include "scan/file_list.h"
#include "scan/header_words.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

constexpr double kUsualTemperature = 20.0;  // deg C, where nobody says one

// A line of the text as a comment: UTF-8, without TABs, at most 200 characters.
std::string CommentOf(const std::string& line) {
  std::string bytes = IsUtf8(line) ? Utf8ToCp1252(line) : line;
  std::replace(bytes.begin(), bytes.end(), '\t', ' ');
  return Cp1252ToUtf8(Trim(std::string_view(bytes).substr(0, kMostComment)));
}

class HeaderTaking {
 public:
  HeaderTaking(const std::vector<std::string>& lines, const ImportChoices& choices,
               const fs::path& target, TextImport& result)
      : lines_(lines), choices_(choices), target_(target), result_(result) {}

  bool Run(const fs::path& source) {
    FindHeader();
    TakeKind();
    TakeHeader();
    TakeComment(source);
    return header_.has_value();
  }

 private:
  void Remark(std::string sentence) { result_.remarks.push_back(std::move(sentence)); }

  // A line of a scan's header before the rows.
  void FindHeader() {
    constexpr std::size_t kDeepest = 12;
    const std::size_t most = choices_.skip ? static_cast<std::size_t>(*choices_.skip) : kDeepest;
    for (std::size_t k = 0; k < std::min({lines_.size(), kDeepest, most}) && !header_; ++k) {
      header_ = ReadHeaderWords(lines_[k]);
      headerLine_ = k;
    }
  }

  void TakeKind() {
    const bool noRadius = header_ && (header_->kind == 'W' || header_->kind == 'E');
    if (noRadius && !choices_.kind) {
      result_.state = ImportState::kNoScan;
      result_.fault = std::string("the header says ") + header_->kind +
                      ": the first column of such a scan is no radius";
    }
    const std::string name = PathText(target_.filename());
    char byName = 'R';
    if (ToLower(PathText(target_.extension())).starts_with(".ip")) byName = 'P';
    const std::string extension = ToLower(PathText(target_.extension()));
    if (extension.starts_with(".fi") || extension.starts_with(".fl")) byName = 'F';
    const bool said = header_ && std::string_view("RPF").find(header_->kind) != std::string::npos;
    result_.header.kind = choices_.kind.value_or(said ? header_->kind : byName);
    if (header_ && header_->kind == 'I' && !choices_.reference) {
      Remark(
          "The header says intensity (I), and no reference is chosen: the signals are written "
          "as they stand.");
    }
    const bool named = IsNameOfKind(name, FileKind::kIpRa) || IsNameOfKind(name, FileKind::kFi);
    if (named && result_.header.kind != byName) {
      Remark(std::string("The kind is ") + result_.header.kind + ", the name " + name + " says " +
             byName + ".");
    }
  }

  // A value of the header: chosen, of the header line, or a default that is said.
  double Value(const std::optional<double>& chosen, const std::optional<double>& said, double most,
               double otherwise, const char* name, double least = 0.0) {
    if (chosen) return *chosen;
    if (said && *said >= least && *said <= most) return *said;
    if (said) {
      Remark(std::string("The header's ") + name + " " + ShortestText(*said) +
             " has no place in a scan file.");
    }
    defaults_ +=
        (defaults_.empty() ? "" : ", ") + std::string(name) + " " + ShortestText(otherwise);
    return otherwise;
  }

  // The cell that the last digit of the file's name says, as in 00001.RA3.
  double CellByName() const {
    const std::string name = PathText(target_.filename());
    const char last = name.empty() ? '1' : name.back();
    const bool digit = PathText(target_.extension()).size() == 4 && last >= '1' && last <= '8';
    return digit ? last - '0' : 1;
  }

  void TakeHeader() {
    std::optional<double> cell;
    std::optional<double> temperature;
    std::optional<double> speed;
    std::optional<double> wavelength;
    ScanHeader& header = result_.header;
    if (header_) {
      cell = header_->cell;
      temperature = header_->temperature;
      speed = header_->speed;
      wavelength = header_->wavelength;
      constexpr double kMostSeconds = 9999999.0;
      constexpr double kMostOmega2t = 9.9999e99;
      const double seconds = header_->seconds.value_or(0.0);
      const double omega2t = header_->omega2t.value_or(0.0);
      if (seconds >= 0.0 && seconds <= kMostSeconds) header.seconds = seconds;
      if (omega2t >= 0.0 && omega2t <= kMostOmega2t) header.omega2t = omega2t;
    }
    const auto chosenCell = choices_.cell ? std::optional<double>(*choices_.cell) : std::nullopt;
    header.cell = static_cast<int>(Value(chosenCell, cell, kMostCell, CellByName(), "cell", 1.0));
    header.speed = Value(choices_.speed, speed, kMostSpeed, 0.0, "speed");
    if (!choices_.speed && !speed) {
      Remark("The speed is not known. Give it here, or on \"Fit Control\" before a fit.");
    }
    header.wavelength = Value(choices_.wavelength, wavelength, kMostWavelength, 0.0, "wavelength");
    header.temperature = Value(choices_.temperature, temperature, kMostTemperature,
                               kUsualTemperature, "temperature");
    if (!defaults_.empty()) {
      Remark("No choice and no header line says these, so they are taken as: " + defaults_ + ".");
    }
  }

  void TakeComment(const fs::path& source) {
    if (choices_.comment) {
      result_.comment = *choices_.comment;
    } else if (header_ && headerLine_ > 0) {
      result_.comment = CommentOf(lines_.front());
    } else {
      result_.comment = CommentOf(PathText(source.filename()));
    }
  }

  const std::vector<std::string>& lines_;
  const ImportChoices& choices_;
  const fs::path& target_;
  TextImport& result_;
  std::optional<HeaderWords> header_;
  std::size_t headerLine_ = 0;  // from 0
  std::string defaults_;        // that were taken
};

}  // namespace

bool TakeImportHeader(const std::vector<std::string>& lines, const ImportChoices& choices,
                      const fs::path& source, const fs::path& target, TextImport& import) {
  return HeaderTaking(lines, choices, target, import).Run(source);
}

}  // namespace quorvane

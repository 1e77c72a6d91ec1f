#include "cli/import_command.h"

#include <algorithm>
#include <ostream>

#include "base/files.h"
#include "base/number_format.h"
#include "base/paths.h"
#include "job/json_records.h"
#include "job/toml_reader.h"
#include "scan/file_list.h"
#include "scan/text_import.h"

namespace quorvane {

namespace {

namespace fs = std::filesystem;

ImportChoices ChoicesOf(const ImportArguments& arguments) {
  ImportChoices choices;
  choices.form = {SeparatorOf(arguments.separator), DecimalSignOf(arguments.decimal)};
  choices.radius = arguments.radius;
  choices.signal = arguments.signal;
  choices.error = arguments.error;
  choices.reference = arguments.reference;
  choices.skip = arguments.skip;
  choices.cell = arguments.cell;
  choices.speed = arguments.speed;
  choices.wavelength = arguments.wavelength;
  choices.temperature = arguments.temperature;
  choices.comment = arguments.comment;
  return choices;
}

bool SameFile(const fs::path& a, const fs::path& b) {
  std::error_code error;
  return fs::equivalent(a, b, error) || WholePath(a) == WholePath(b);
}

// What is written may not take the place of what is read, nor of the other.
void CheckTargets(const fs::path& source, const fs::path& target, const std::string& json) {
  if (IsNameOfKind(PathText(target.filename()), FileKind::kEl)) {
    throw JobFault(PathText(target) + ": files of the kind EL are not written");
  }
  if (SameFile(source, target)) {
    throw JobFault(PathText(target) + ": is the file that is read; name another one");
  }
  if (json.empty()) return;
  const fs::path other = PathFromText(json);
  if (SameFile(other, source) || SameFile(other, target)) {
    throw JobFault(json + ": is another file of this import; name another one");
  }
}

Json ImportJson(const TextImport& import) {
  Json json = DocumentHead();
  json["separator"] = NameOf(import.form.separator);
  json["decimal"] = NameOf(import.form.decimal);
  Json& columns = json["columns"];
  columns["radius"] = import.columns.radius;
  columns["signal"] = import.columns.signal;
  if (import.columns.error) columns["error"] = *import.columns.error;
  if (import.columns.reference) columns["reference"] = *import.columns.reference;
  json["rows"] = import.rows.size();
  Json& lines = json["unreadable"] = Json::array();
  for (const UnreadableRow& row : import.unreadable) lines.push_back(row.line);
  const ScanHeader& header = import.header;
  json["kind"] = std::string(1, header.kind);
  json["cell"] = header.cell;
  json["speed"] = header.speed;
  json["wavelength"] = header.wavelength;
  json["temperature"] = header.temperature;
  json["comment"] = import.comment;
  Json& r = json["r"] = Json::array();
  Json& c = json["c"] = Json::array();
  for (const ImportedRow& row : import.rows) {
    r.push_back(row.r);
    c.push_back(row.c);
  }
  return json;
}

// What was understood, and on standard error what nobody said and what could not be read.
void PrintImport(const std::string& file, const TextImport& import, const CommandStreams& streams) {
  const ScanHeader& header = import.header;
  streams.out << file << ": " << FormText(import) << '\n'
              << "Kind " << header.kind << ", cell " << header.cell << ", "
              << FormatNumber(header.speed, "0") << " rpm, " << FormatNumber(header.wavelength, "0")
              << " nm, " << FormatNumber(header.temperature, "0.0") << " deg C\n"
              << import.rows.size() << " rows from "
              << FormatNumber(import.rows.front().r, "0.0###") << " to "
              << FormatNumber(import.rows.back().r, "0.0###") << " cm\n";
  for (const std::string& remark : import.remarks) streams.err << file << ": " << remark << '\n';
  if (import.unreadable.empty()) return;
  streams.err << file << ": rows that cannot be read: " << import.unreadable.size() << '\n';
  for (const std::string& text : UnreadableTexts(import)) streams.err << "  " << text << '\n';
}

ExitStatus Refused(const std::string& file, const TextImport& import, std::ostream& err) {
  err << file << ": " << import.fault << '\n';
  switch (import.state) {
    case ImportState::kAmbiguous:
      err << "--separator comma, semicolon, TAB or blanks and --decimal point or comma choose.\n";
      return ExitStatus::kNotDone;
    case ImportState::kBadChoice:
      return ExitStatus::kBadUsage;
    case ImportState::kUnreadable:
      return ExitStatus::kFileFault;
    case ImportState::kReady:
    case ImportState::kNoScan:
      break;
  }
  return ExitStatus::kNotDone;
}

}  // namespace

ExitStatus RunImport(const ImportArguments& arguments, const CommandStreams& streams) {
  const fs::path source = PathFromText(arguments.file);
  const fs::path target = PathFromText(arguments.output);
  CheckTargets(source, target, arguments.json);
  const TextImport import = UnderstandFile(source, ChoicesOf(arguments), target);
  if (import.state != ImportState::kReady) return Refused(arguments.file, import, streams.err);
  WriteWholeFile(target, ScanFileOf(import));
  PrintImport(arguments.file, import, streams);
  if (!arguments.json.empty()) {
    WriteWholeFile(PathFromText(arguments.json), JsonText(ImportJson(import)));
  }
  return ExitStatus::kDone;
}

}  // namespace quorvane

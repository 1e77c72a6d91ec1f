#include "archive/experiment_file.h"

#include "archive/chart_member.h"
#include "archive/data_member.h"
#include "archive/zip_file.h"
#include "base/files.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestArchive = std::size_t{1} << 30U;  // bytes

constexpr const char* kDataMember = "datafile.bin";
constexpr const char* kLogMember = "logfile.rtf";
constexpr const char* kChartMember = "chartfile.bin";

const Bytes* Find(const std::vector<ZipMember>& members, const char* name) {
  for (const ZipMember& member : members) {
    if (member.name == name) return &member.bytes;
  }
  return nullptr;
}

std::vector<ZipMember> MembersOf(const Experiment& experiment) {
  const auto log = BytesOf(experiment.log);
  return {{kDataMember, WriteDataMember(experiment)},
          {kLogMember, Bytes(log.begin(), log.end())},
          {kChartMember, WriteChartMember(experiment.GraphStreams)}};
}

// Throws ArchiveFault if the archive at `path` does not hold exactly `members` and `comment`.
void CompareWith(const std::vector<ZipMember>& members, const std::string& comment,
                 const fs::path& path) {
  const std::string zip = ReadWholeFile(path, kLongestArchive);
  const std::vector<ZipMember> found = ReadZip(zip, {kDataMember, kLogMember, kChartMember});
  if (ReadZipComment(zip) != comment) {
    throw ArchiveFault("the comment: does not read back as it was written");
  }
  for (const ZipMember& member : members) {
    const Bytes* bytes = Find(found, member.name.c_str());
    if (bytes == nullptr || *bytes != member.bytes) {
      throw ArchiveFault(member.name + ": does not read back as it was written");
    }
  }
}

}  // namespace

ReadExperiment ReadExperimentFile(const fs::path& path) {
  const std::string zip = ReadWholeFile(path, kLongestArchive);
  const std::vector<ZipMember> members = ReadZip(zip, {kDataMember, kLogMember, kChartMember});
  ReadExperiment result;
  result.experiment.comment = ReadZipComment(zip);
  const Bytes* data = Find(members, kDataMember);
  if (data == nullptr) throw ArchiveFault("the archive holds no datafile.bin");
  try {
    ReadDataMember(*data, result.experiment);
    if (const Bytes* charts = Find(members, kChartMember); charts != nullptr) {
      result.experiment.GraphStreams = ReadChartMember(*charts);
    } else {
      result.warnings.push_back("The archive holds no chartfile.bin: there are no saved graphs.");
    }
  } catch (const ByteFault& fault) {
    throw ArchiveFault(fault.what());
  }
  if (const Bytes* log = Find(members, kLogMember); log != nullptr) {
    result.experiment.log = TextOf(*log);
  } else {
    result.warnings.push_back("The archive holds no logfile.rtf: the log is empty.");
  }
  return result;
}

void WriteExperimentFile(const fs::path& path, const Experiment& experiment) {
  const std::vector<ZipMember> members = MembersOf(experiment);
  const std::string& comment = experiment.comment;
  WriteWholeFile(path, WriteZip(members, comment),
                 [&](const fs::path& written) { CompareWith(members, comment, written); });
}

}  // namespace quorvane

#include "job/scan_job.h"

#include "base/files.h"
#include "base/paths.h"
#include "base/text.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

std::string NameIn(const fs::path& folder, const fs::path& file) {
  std::string name = PathInJob(WholePath(file), folder);
  if (!IsUtf8(name)) throw FileFault(name + ": a job cannot hold this name, which is no UTF-8");
  return name;
}

}  // namespace

std::string ScanJobText(const std::vector<fs::path>& files, const LoadWords& words,
                        const fs::path& folder) {
  const fs::path home = WholePath(folder.empty() ? "." : folder / "").parent_path();
  TomlWriter job;
  for (const fs::path& file : files) {
    job.Entry("load");
    job.Key("file", NameIn(home, file));
    if (words.kind) job.Key("kind", *words.kind);
    if (words.centerpiece) job.Key("centerpiece", *words.centerpiece);
    if (words.channels) job.Key("channels", *words.channels);
  }
  return job.Text();
}

}  // namespace quorvane

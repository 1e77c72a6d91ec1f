// Saving a session as an experiment archive, and taking one up.
#pragma once

#include <filesystem>
#include <optional>

#include "archive/experiment_file.h"
#include "base/file_lock.h"
#include "core/program_state.h"

namespace quorvane {

class Host;
class SessionHost;

// The session as an archive in `folder` holds it, but without its log. Throws ArithmeticFault if a
// constrained K ratio has no logarithm.
Experiment ExperimentOf(const QuorvaneModule& module, const std::filesystem::path& folder);

// Saves the session and the host's log at `path`. True if saved; otherwise a message box has said
// why, and a file that stood there is as it was. The chosen model
// goes to ModelIndex of the page; constrained K ratios are saved as ln K and stay ratios on
// the page. The comment keeps the setup of the page (job/page_setup.h), or `comment` if it is
// given.
bool SaveExperiment(QuorvaneModule& module, const std::filesystem::path& path, SessionHost& host,
                    const std::string* comment = nullptr);

// The experiment saved at `path`; nothing if it cannot be read, and a message box has said why.
std::optional<ReadExperiment> OpenExperiment(const std::filesystem::path& path, Host& host);

// Takes up an experiment that was read from `path` in place of the session's, its log in place of
// the host's; boxes tell of an old layout and of missing parts. Vbar, density of an experiment that
// knows them become the defaults. Blanks are not chosen for the fit, all other datasets are; the
// parameter page is as before "Setup Fit", unless the comment keeps a setup of them. The log goes
// on where it ended. Gives a remark if the comment could not be used as it is, otherwise no text.
std::string TakeUpExperiment(QuorvaneModule& module, ReadExperiment&& read,
                             const std::filesystem::path& path, SessionHost& host);

// The same, and the log says where the session goes on.
std::string LoadReadExperiment(QuorvaneModule& module, ReadExperiment&& read,
                               const std::filesystem::path& path, SessionHost& host);

// OpenExperiment and LoadReadExperiment; a remark is reported. True if loaded; otherwise nothing
// has changed.
bool LoadExperiment(QuorvaneModule& module, const std::filesystem::path& path, SessionHost& host);

// TakeUpExperiment without a box.
std::string ResumeExperiment(QuorvaneModule& module, ReadExperiment&& read, SessionHost& host);

// The lock that says that a program has the archive at `path` open. All names that lead to a file
// have the same.
FileLock LockArchive(const std::filesystem::path& path);

// The file that stands for that lock.
std::filesystem::path ArchiveLockFile(const std::filesystem::path& path);

}  // namespace quorvane

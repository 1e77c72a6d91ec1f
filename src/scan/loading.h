// Loading as the tab "Source Files" does it: one file, one name of a multiple load, or a blank.
#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "scan/channel_windows.h"
#include "scan/scan_file.h"

namespace quorvane {

// What the user has set on the tab.
struct ScanLoadSettings {
  FileKind kind = FileKind::kIpRa;
  Centerpiece centerpiece = Centerpiece::kTwoChannels;  // counts for "IP,RA" only
  std::array<bool, kMaxChannels> chkChannel = {true};   // A to D; counts for 6 and 8 channels
};

// One window of a file, which makes one dataset.
struct LoadWindow {
  char letter;  // of the channel
  float low;    // cm, both inclusive; for "EL" r^2/2 in cm^2
  float high;
};

// Whether files are cut into channels, and so the choice of channels counts: those of kind "IP,RA"
// for a cell of 6 or 8 channels.
bool IsCut(const ScanLoadSettings& settings);

// The windows that the settings cut out of a file, in the order of the letters.
std::vector<LoadWindow> WindowsOf(const ScanLoadSettings& settings);

// What came of loading a file: the worst outcome of its channels, and how many datasets came.
struct LoadResult {
  LoadOutcome outcome = LoadOutcome::kLoaded;
  int datasets = 0;
};

// "Load": the selected file, one dataset a chosen channel. A binary file is refused with a message.
// Names come from HeaderLine, the memory of the selection (GetCommentLines).
LoadResult LoadSelectedFile(DatasetStore& store, const ScanLoadSettings& settings,
                            const std::filesystem::path& path, Host& host);

// One file of "Load Multiple": no test for binary files; names of the kind "IP,RA" come from the
// file's own second line, those of "FI" and "EL" from HeaderLine.
LoadResult LoadNamedFile(DatasetStore& store, const ScanLoadSettings& settings,
                         const std::filesystem::path& path, Host& host);

// "Load Multiple": the files in rising order of their names (plain comparison of characters), each
// as LoadNamedFile does; one that fails is passed over. Each is checked before, and one message
// afterwards names those that the check warns of.
void LoadNamedFiles(DatasetStore& store, const ScanLoadSettings& settings,
                    std::vector<std::filesystem::path> paths, Host& host);

// Files dropped on a window: as LoadNamedFiles, but folders, binary files and what cannot be opened
// are left out, and the message names them too.
void LoadDroppedFiles(DatasetStore& store, const ScanLoadSettings& settings,
                      const std::vector<std::filesystem::path>& paths, Host& host);

// "Load Blank": one dataset from the file over the whole window, whatever channels are set.
LoadResult LoadBlankFile(DatasetStore& store, FileKind kind, const std::filesystem::path& path,
                         Host& host);

// Which kind the files were taken for that the datasets from position `first` (from 0) came from,
// whatever their names say: one sentence, of the first file and the number of the others.
std::string TakenForText(const DatasetStore& store, int first, FileKind kind);

}  // namespace quorvane

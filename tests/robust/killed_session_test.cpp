// Killing the window program at any moment breaks no file and loses no change that it had kept or
// saved.
#include <gtest/gtest.h>

#if !defined(_WIN32)

#include <chrono>
#include <csignal>
#include <fstream>
#include <random>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

#include "archive/experiment_file.h"
#include "base/files.h"
#include "rtf/log_text.h"
#include "support/temp_folder.h"

using namespace quorvane;
namespace fs = std::filesystem;

namespace {

constexpr int kSetLines = 203;  // comment, header, 201 points

pid_t StartSession(const fs::path& folder, unsigned seed) {
  const pid_t child = fork();
  if (child == 0) {
    execl(SESSION_PROGRAM, SESSION_PROGRAM, folder.c_str(), std::to_string(seed).c_str(), nullptr);
    _exit(9);
  }
  return child;
}

// The last change that an archive holds, which must be whole, log and all.
int LastChangeIn(const fs::path& archive) {
  const Experiment experiment = ReadExperimentFile(archive).experiment;
  EXPECT_EQ(experiment.Datasets.size(), 9U) << archive;
  const int change = static_cast<int>(experiment.FitPage.FitPageSpare[0]);
  const LoadedLog log = ReadLog(experiment.log, {});
  EXPECT_TRUE(log.understood);
  if (change > 0) {
    EXPECT_NE(PlainText(log.text).find("Change " + std::to_string(change)), std::string::npos);
  }
  return change;
}

// The last change in the session's archive or in what was kept beside it.
int LastChangeOnDisk(const fs::path& folder) {
  int last = 0;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.path().extension() == ".exz") last = std::max(last, LastChangeIn(entry.path()));
  }
  return last;
}

struct Journal {
  int events = 0;
  int made = 0;    // the last change
  int onDisk = 0;  // the last one known to be kept or saved
  int kept = 0;    // times
  int saved = 0;
};

Journal ReadJournal(const fs::path& folder) {
  Journal journal;
  std::ifstream in(folder / "journal");
  std::string event;
  for (int change = 0; in >> event >> change;) {
    ++journal.events;
    if (event == "change") journal.made = change;
    if (event == "kept") ++journal.kept;
    if (event == "saved") ++journal.saved;
    if (event != "change") journal.onDisk = change;
  }
  return journal;
}

// Whether a file that exists ends as a whole one does.
void ExpectEnding(const fs::path& file, const std::string& ending) {
  EXPECT_TRUE(!fs::exists(file) || ReadText(file).ends_with(ending)) << file;
}

void ExpectWholeFiles(const fs::path& folder) {
  ExpectEnding(folder / "log.rtf", "}\r\n");
  ExpectEnding(folder / "graph.png", std::string("IEND\xAE\x42\x60\x82"));
  ExpectEnding(folder / "graph.svg", "</svg>\n");
  ExpectEnding(folder / "graph.pdf", "%%EOF\n");
  ExpectEnding(folder / "quorvane.ini", "\n");
  if (fs::exists(folder / "log.rtf")) {
    EXPECT_TRUE(ReadLog(ReadText(folder / "log.rtf"), {}).understood);
  }
  for (const auto& entry : fs::directory_iterator(folder / "sets")) {
    const std::string text = ReadText(entry.path());
    if (entry.path().filename().string().starts_with(".")) continue;  // a temporary one
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), kSetLines) << entry.path();
  }
}

bool HasEnded(pid_t child) {
  siginfo_t info{};
  waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT);
  return info.si_pid != 0;
}

// Kills a session as it starts, or after a number of its events, however fast the machine is; one
// in four not before it has kept its work. False if it ended by itself.
bool RunAndKill(const fs::path& folder, unsigned seed, std::mt19937& random) {
  const Journal before = ReadJournal(folder);
  const pid_t child = StartSession(folder, seed);
  const auto events = static_cast<int>(random() % 40);
  const bool starting = events < 4;
  const bool keeping = seed % 4 == 0;
  const auto mayGo = [&] {
    const Journal now = ReadJournal(folder);
    if (keeping) return now.kept > before.kept;
    return starting || now.events >= before.events + events;
  };
  while (!HasEnded(child) && !mayGo()) std::this_thread::sleep_for(std::chrono::milliseconds(2));
  const unsigned most = starting && !keeping ? 1000 : 30;  // ms; a start takes a few hundred
  std::this_thread::sleep_for(std::chrono::microseconds(random() % (most * 1000)));
  kill(child, SIGKILL);
  int status = 0;
  waitpid(child, &status, 0);
  return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

void KillSessions(int rounds, unsigned seed) {
  const TempFolder folder;
  std::mt19937 random(seed);
  int most = 0;
  for (int round = 0; round < rounds; ++round) {
    ASSERT_TRUE(RunAndKill(folder.path(), seed * 1000 + static_cast<unsigned>(round), random))
        << "it ended by itself";
    if (!fs::exists(folder / "work.exz")) continue;  // killed as it started
    const Journal journal = ReadJournal(folder.path());
    const int onDisk = LastChangeOnDisk(folder.path());
    EXPECT_GE(onDisk, journal.onDisk) << "round " << round;
    EXPECT_LE(onDisk, journal.made + 1);  // a kill may come before the journal's line
    most = std::max(most, journal.made - onDisk);
    ExpectWholeFiles(folder.path());
    if (testing::Test::HasFailure()) return;
  }
  const Journal journal = ReadJournal(folder.path());
  EXPECT_GT(journal.kept, 0);
  EXPECT_GT(journal.saved, 0);
  EXPECT_GT(journal.made, rounds);  // each session goes on where the last one was killed
  std::cout << rounds << " kills, " << journal.made << " changes, kept " << journal.kept
            << " times, saved " << journal.saved << " times; at most " << most
            << " changes lost by a kill\n";
}

}  // namespace

TEST(KilledSessionFew, LosesNothingThatWasKept) {
  KillSessions(6, 1);
}

class KilledSession : public testing::TestWithParam<unsigned> {};

TEST_P(KilledSession, LosesNothingThatWasKept) {
  KillSessions(25, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Seeds, KilledSession, testing::Values(2, 3, 4, 5));

#endif

// Killing the program while it saves leaves the archive as it was or as it was to become.
#include <gtest/gtest.h>

#if !defined(_WIN32)

#include <chrono>
#include <csignal>
#include <random>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

#include "archive/experiment_file.h"
#include "base/clock.h"
#include "base/files.h"
#include "support/temp_folder.h"

using namespace quorvane;

namespace {

Experiment ManyDatasets(int count) {
  Experiment experiment;
  experiment.directory.SetBytes("/lab");
  experiment.log = "{\\rtf1 log}";
  experiment.Datasets.assign(static_cast<std::size_t>(count), EmptyDataset());
  double value = 0.0;
  for (Dataset& dataset : experiment.Datasets) {
    dataset.NumPoints = kMaxPoints;
    for (double& c : dataset.C) c = std::sin(value += 0.1);
  }
  return experiment;
}

// Starts the program, which saves `from` as `to`.
pid_t StartSave(const std::string& from, const std::string& to) {
  const pid_t child = fork();
  if (child == 0) {
    if (std::freopen("/dev/null", "w", stdout) == nullptr) _exit(9);
    execl(QUORVANE_CLI, QUORVANE_CLI, "archive", from.c_str(), "--save-as", to.c_str(), nullptr);
    _exit(9);
  }
  return child;
}

// Whether the program was killed; waits for its end.
bool WasKilled(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return WIFSIGNALED(status);
}

}  // namespace

TEST(KilledSave, NeverLeavesABrokenArchive) {
  const TempFolder folder;
  WriteExperimentFile(folder / "old.exz", ManyDatasets(20));
  WriteExperimentFile(folder / "new.exz", ManyDatasets(21));
  const std::string old = ReadText(folder / "old.exz");
  const std::string from = PathText(folder / "new.exz");
  const std::string to = PathText(folder / "target.exz");
  const Stopwatch watch;
  ASSERT_FALSE(WasKilled(StartSave(from, to)));
  const std::string fresh = ReadText(folder / "target.exz");  // as it is saved again
  ASSERT_EQ(ReadExperimentFile(folder / "target.exz").experiment.Datasets.size(), 21U);
  std::uniform_real_distribution<double> delay(0.0, 1.2 * watch.Seconds());
  std::mt19937 random(1);
  int killed = 0;
  int replaced = 0;
  for (int round = 0; round < 100; ++round) {
    WriteWholeFile(folder / "target.exz", old);
    const pid_t child = StartSave(from, to);
    std::this_thread::sleep_for(std::chrono::duration<double>(delay(random)));
    kill(child, SIGKILL);
    if (WasKilled(child)) ++killed;
    const std::string target = ReadText(folder / "target.exz");
    ASSERT_TRUE(target == old || target == fresh) << "round " << round;
    if (target == fresh) ++replaced;
  }
  EXPECT_GT(killed, 20);   // the delays reach into the save
  EXPECT_GT(replaced, 0);  // and past it
}

#endif

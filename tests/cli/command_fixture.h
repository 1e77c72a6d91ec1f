// Runs commands in-process in a folder of their own, with captured output.
#pragma once

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "base/files.h"
#include "cli/command_line.h"
#include "support/temp_folder.h"

namespace quorvane {

class CommandTest : public testing::Test {
 protected:
  int Run(std::vector<std::string> arguments) {
    out.str("");
    err.str("");
    const CommandStreams streams{out, err, folder.path(), false};
    return static_cast<int>(RunCommandLine(std::move(arguments), streams));
  }

  // Writes the job and analyses it; results go to out.json.
  int Analyze(const std::string& job) {
    folder.Write("job.toml", job);
    std::filesystem::remove(folder / "out.json");
    return Run({"analyze", Path("job.toml"), "--json", Path("out.json")});
  }

  nlohmann::json Result() const {
    return nlohmann::json::parse(ReadText(folder / "out.json"), nullptr, false);
  }

  std::string Path(const std::string& name) const {
    return PathText((folder / name).make_preferred());
  }

  // A scan of one ideal species, buoyant weight 8000 Da, baseline 0.01, signal 0.3 at 6.533 cm.
  void WriteScan(const std::string& name, int speed = 20000, int rows = 60) const {
    std::ostringstream text;
    text << "one species\r\nR 3 20.0 " << speed << " 0086400 1.0000E11 280 21\r\n";
    text.precision(6);
    for (int k = 0; k < rows; ++k) {
      const double r = 6.40 + 0.2 * k / (rows - 1);
      const double omega = 1.319007e-10 * speed * speed / 293.15;
      const double y = 0.01 + 0.3 * std::exp(8000 * omega * (r * r - 6.5333 * 6.5333) / 2) +
                       0.002 * std::sin(12.9898 * k);
      char row[64];
      std::snprintf(row, sizeof row, "   %.4f  %14.6f  %12.4f\r\n", r, y, 0.004);
      text << row;
    }
    folder.Write(name, text.str());
  }

  TempFolder folder;
  std::ostringstream out;
  std::ostringstream err;
};

}  // namespace quorvane

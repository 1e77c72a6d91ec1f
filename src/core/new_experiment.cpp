#include "core/new_experiment.h"

#include "base/files.h"
#include "base/host.h"

void StartNewExperiment(QuorvaneModule& module) {
  if (module.ExperimentOpen) module.GraphStreams.clear();
  module.Store = {};
  const int model = module.Setup.ModelIndex;
  module.Setup = {};
  module.Setup.ModelIndex = model;
  module.Fit = {};
  module.CIRatios = {};
  module.ExperimentOpen = false;
}

void LogNewHead(const std::filesystem::path& currentFolder, Host& host) {
  LogHead(host);
  host.PrintIt("\r\nThe current directory is " + PathText(currentFolder) + "\r\n");
}

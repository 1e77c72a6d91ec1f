#include "core/new_experiment.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/host.h"
#include "fit/fit_setup.h"

namespace quorvane {

void StartNewExperiment(QuorvaneModule& module) {
  if (module.ExperimentOpen) module.GraphStreams.clear();
  module.Store.Datasets.clear();  // HeaderLine belongs to the file that is still selected
  module.Store.UseData.clear();
  module.Store.Edits.Clear();
  if (module.Setup.ConstrainKRatios) {
    try {
      ReleaseRatios(module.Setup, module.FitPage, module.FitPage.ModelLnK1);
    } catch (const ArithmeticFault&) {  // ratios without a logarithm: new ones are typed anyway
    }
  }
  const Model* model = module.Setup.FitModel;
  module.Setup = {};
  module.Setup.FitModel = model;
  module.LastFit.reset();
  module.Fits.Clear();
  module.Figure.reset();
  module.Solution = {};
  module.ExperimentOpen = false;
}

void LogNewHead(const std::filesystem::path& currentFolder, Host& host) {
  LogHead(host);
  host.PrintIt("\r\nThe current directory is " + PathText(currentFolder) + "\r\n");
}

}  // namespace quorvane

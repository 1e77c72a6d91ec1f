#include "core/graph_store.h"

#include "base/byte_stream.h"
#include "base/host.h"

namespace quorvane {

void SaveGraph(QuorvaneModule& module, const Chart& chart) {
  Chart kept = chart;
  kept.title = "Graph #" + std::to_string(module.NumGraphs() + 1) + " :: " + chart.title;
  module.GraphStreams.push_back(SerializeChart(kept));
}

void SendGraphToLog(QuorvaneModule& module, const Chart& chart, Host& host) {
  if (module.Preferences.SaveGraphs) SaveGraph(module, chart);
  host.GoToEndOfLog();
  host.FocusLog();
  if (module.Preferences.LogGraphs) host.SendPictureToLog(chart);
}

Chart GraphAt(const QuorvaneModule& module, int number) {
  try {
    return ParseChart(module.GraphStreams.at(static_cast<std::size_t>(number - 1)));
  } catch (const ByteFault&) {
    return {"Graph #" + std::to_string(number) + " :: kept by another program", "", {}};
  }
}

bool DeleteAllGraphs(QuorvaneModule& module, Host& host) {
  if (!host.AskYesNo("", "Delete all saved graphs?")) return false;
  module.GraphStreams.clear();
  return true;
}

}  // namespace quorvane

#include "core/graph_store.h"

#include "base/host.h"

void SaveGraph(QuorvaneModule& module, const Chart& chart) {
  Chart kept = chart;
  kept.title = "Graph #" + std::to_string(module.NumGraphs() + 1) + " :: " + chart.title;
  module.GraphStreams.push_back(SerializeChart(kept));
}

void SendGraphToLog(QuorvaneModule& module, const Chart& chart, Host& host) {
  if (module.SaveGraphs) SaveGraph(module, chart);
  if (module.LogGraphs) host.SendPictureToLog(chart);
}

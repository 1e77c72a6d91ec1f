// The graphs of a session: pictures for the log and charts kept for export.
#pragma once

#include "base/chart.h"
#include "core/program_state.h"

namespace quorvane {

class Host;

// Keeps a copy of `chart` as the next "Graph #", its title headed so.
void SaveGraph(QuorvaneModule& module, const Chart& chart);

// A finished plot: kept if SaveGraphs is on, put at the end of the log if LogGraphs is on.
void SendGraphToLog(QuorvaneModule& module, const Chart& chart, Host& host);

// Graph number `number` (from 1). Bytes that are no Chart of ours, as other programs keep them,
// give an empty Chart that says so.
Chart GraphAt(const QuorvaneModule& module, int number);

// Asks, and on Yes forgets all kept graphs. True if they are gone.
bool DeleteAllGraphs(QuorvaneModule& module, Host& host);

}  // namespace quorvane

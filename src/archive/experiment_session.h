// Saving a session as an experiment archive, and taking one up.
#pragma once

#include <filesystem>

#include "core/program_state.h"

class SessionHost;

// Saves the session and the host's log at `path`. True if saved; otherwise a message box has said
// why, and a file that stood there is as it was. `modelIndex`, the chosen entry of the list of
// models, goes to ModelIndex of the page; constrained K ratios are saved as ln K and stay ratios on
// the page.
bool SaveExperiment(QuorvaneModule& module, int modelIndex, const std::filesystem::path& path,
                    SessionHost& host);

// Takes up the experiment saved at `path` in place of the session's, its log in place of the
// host's. True if loaded; otherwise a message box has said why, and nothing has changed.
// Vbar, density of an experiment that knows them become the defaults. Blanks are not chosen for
// the fit, all other datasets are; the parameter page is as before "Setup Fit".
bool LoadExperiment(QuorvaneModule& module, const std::filesystem::path& path, SessionHost& host);

// The simulation routines: each fills a SimColumn with one model's profile, noise added, and
// writes its points.
#pragma once

#include "sim/gauss_deviate.h"
#include "sim/sim_catalogue.h"
#include "sim/sim_file.h"
#include "sim/sim_problem.h"

namespace quorvane {

class Host;

// What a routine works on. All is owned by the caller; the grid of `column` is built.
struct SimRun {
  SimParameters p;
  SimColumn& column;
  UniformSource& uniform;
  SimFileWriter& file;
  Host& host;
};

// Each gives the free concentrations found, at the meniscus for SimIdeal, SimNonideal and SimIsoD,
// else at the reference radius, and throws ArithmeticFault or SubscriptFault at the first point
// that fails: what was written before stays, nothing after it is written.
//
// One component: e = deviate times RMS; conc = profile + e / EA, signal = conc EA.
// Kept on purpose: a load that the bracket does not enclose gives the reference concentration 0.
SimReference SimIdeal(SimRun& run, const SimModel& model);
// Profile c exp((r^2 - r_0^2) sA / 2 - 2 BM MWA (conc - c)), made consistent by a march of 0.0002
// cm that also takes a point up to one step early; a point that the march misses keeps its old
// value.
SimReference SimNonideal(SimRun& run, const SimModel& model);
SimReference SimNmer(SimRun& run, const SimModel& model);
SimReference SimNmerMmer(SimRun& run, const SimModel& model);
// A fraction alpha of the load is the species of the model that stands apart: monomer that does not
// associate, or N-mer that does not dissociate.
SimReference SimIncompetent(SimRun& run, const SimModel& model);
// Isodesmic chains: u / (1 - K1 u)^2, u the free monomer.
SimReference SimIsoD(SimRun& run, const SimModel& model);

// Two components: species in signal units, noise in signal units.
SimReference SimTwoComponent(SimRun& run, const SimModel& model);

}  // namespace quorvane

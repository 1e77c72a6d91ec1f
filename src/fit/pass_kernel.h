// The inner loops of a pass over the points of one dataset, for models that are sums over species:
// model values, derivatives and the sums of their products, many points side by side. The sums have
// a fixed order, so every processor gives the same bits, whatever vectors it has.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "fit/model_terms.h"

inline constexpr std::size_t kChunk = 64;       // points worked on together
inline constexpr std::size_t kMostColumns = 8;  // fitted parameters that touch a dataset
inline constexpr std::size_t kMostMoves = 8;    // different changes of a rate
inline constexpr std::size_t kMostBasis = 1 + kMaxSpecies + kMostColumns;

// The concentration of a species over the points.
struct SpeciesPlan {
  // c = exp(constant + slope x), or, if a power is not 0, factor times powers of the first
  // two species.
  double constant = 0.0;
  double slope = 0.0;  // 1/cm^2
  double factor = 1.0;
  int powerA = 0;
  int powerB = 0;
  double signal = 0.0;  // signal units/mole
};

// A change of a rate, 1/cm^2; |rate x| <= kMostMove.
struct RateMove {
  double rate = 0.0;
  bool cosh = false;                           // whether some term has a cosh
  std::array<bool, kMaxSpecies> species = {};  // that move so
};

// What one species adds to a derivative: c (level + sinh sinh(move x) + cosh cosh(move x)).
struct ColumnTerm {
  int move = -1;  // index in SetPlan::move, -1 for none
  double level = 0.0;
  double sinh = 0.0;
  double cosh = 0.0;
};
using ColumnTerms = std::array<ColumnTerm, kMaxSpecies>;

// All that the points of a dataset share in one pass.
struct SetPlan {
  std::size_t species = 0;
  std::size_t moves = 0;
  std::size_t columns = 0;  // derivatives with a move
  bool weighted = false;    // the mass conservation sums are wanted
  double baseline = 0.0;
  std::array<SpeciesPlan, kMaxSpecies> parts = {};
  std::array<RateMove, kMostMoves> move = {};
  std::array<ColumnTerms, kMostColumns> terms = {};  // of each column; their levels stay out
  // A point whose value may change by more than the rule of the common step allows is doubtful:
  // boundConstant + boundFactor * (sum of |signal| c) > kSafeShare |value|.
  double boundConstant = 0.0;
  double boundFactor = 0.0;
};

// The values after the first step of the rule in each parameter:
//   value + sum of c (factor exp(rate x) - signal).
struct FirstStepPlan {
  struct Part {
    double factor = 0.0;
    double rate = 0.0;
    double signal = 0.0;
  };
  std::array<Part, kMaxSpecies> parts = {};
};

inline constexpr double kMostMove = 0.1;
inline constexpr double kSafeShare = 0.85;
// A value after the first step that is at least this share of the one before leads to the common
// step.
inline constexpr double kSafeRatio = 1.0 - kSafeShare;

struct alignas(64) ChunkRow : std::array<double, kChunk> {};

// The points at hand and what is found for them. Points behind the last one of a dataset are to
// have x, y and weight 0.
struct Chunk {
  ChunkRow x;
  ChunkRow y;
  ChunkRow weight;  // of the mean concentration
  std::array<ChunkRow, kMostMoves> sinh;
  std::array<ChunkRow, kMostMoves> cosh;
  ChunkRow value;
  ChunkRow doubt;  // above 0: doubtful
  ChunkRow residual;
  std::array<ChunkRow, kMostBasis> basis;
  ChunkRow& C(std::size_t species) { return basis[1 + species]; }
  const ChunkRow& C(std::size_t species) const { return basis[1 + species]; }
};

// The sums over the points of a dataset. Every derivative is a combination of the rows of the
// basis: 1, the concentrations of the species, and the columns with a move.
struct BasisSums {
  std::array<std::array<double, kMostBasis>, kMostBasis> product = {};  // lower triangle
  std::array<double, kMostBasis> gradient = {};                         // with the residuals
  double squares = 0.0;                                                 // of the residuals
  // Sums of weight c, weight c sinh(move x), weight c cosh(move x).
  std::array<double, kMaxSpecies> level = {};
  std::array<std::array<double, kMaxSpecies>, kMostMoves> sinh = {};
  std::array<std::array<double, kMaxSpecies>, kMostMoves> cosh = {};
};

struct PassKernel {
  const char* name;
  // Fills all of `chunk` behind x, y and weight. Returns the greatest doubt.
  double (*evaluate)(const SetPlan& plan, Chunk& chunk);
  // Puts in chunk.doubt what the first step in one parameter says; returns the greatest.
  double (*testStep)(const SetPlan& plan, const FirstStepPlan& step, Chunk& chunk);
  // Adds the products of the basis and of the residuals.
  void (*addProducts)(const SetPlan& plan, const Chunk& chunk, BasisSums& sums);
  // Adds the weighted sums.
  void (*addWeighted)(const SetPlan& plan, const Chunk& chunk, BasisSums& sums);
};

// The kernels that this machine can run, the fastest first; the last is for any processor.
std::span<const PassKernel> RunnableKernels();

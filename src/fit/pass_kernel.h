// The inner loops of a pass over the points of one dataset, for models that are sums over species:
// values, derivatives by the step rule and the sums of their products, many points side by side.
// What follows derives them; pass_plan.h and species_pass.h complete them.
//
// 1. The model. x = (r^2 - R0^2)/2 of a point, b the baseline, k counts the species (species.h):
//
//      c_k(x) = exp(e_k + s_k x) > 0,      F(x) = b + sum of f_k c_k(x).
//
//    A complex of i A's and j B's, small whole numbers, needs no exp() of its own: its c is
//    exp(sum of its ln K) c_A^i c_B^j.
//
// 2. What a step does. By the step rule (step_rule.h) a parameter of value a0 has the step
//    h = a0/1000, the least step, at nearly every point. e, s and f are linear in each parameter
//    by itself. So if one goes from a0 to a0 + t h, then without any approximation
//
//      e_k + s_k x  grows by  t (d_k + m_k x),      f_k  grows by  t g_k,
//
//    where d, m and g are the same for all points:
//
//      parameter                        d                       m                  g
//      ln reference concentration       n h                     0                  0
//      buoyant weight M                 0                       n omega h          0
//      stoichiometry                    h ln c_ref              h omega M          h E
//      ln K                             h times its terms       0                  0
//
//    n: how many of the component the species holds; c_ref, E, M: reference concentration,
//    extinction coefficient and buoyant weight of that component; omega: SetOmegaTerm of the
//    dataset. The baseline needs no step: its derivative is 1 with any.
//
// 3. The derivative. The centred difference of the least step, between t = 1 and t = -1, is
//
//      D(x) = (F(a0 + h) - F(a0 - h)) / 2h
//           = sum of c_k ((f + g) exp(d + m x) - (f - g) exp(-d - m x)) / 2h
//           = sum of c_k (f sinh(d + m x) + g cosh(d + m x)) / h
//           = sum of c_k (P_k sinh(m x) + Q_k cosh(m x)),
//
//      P_k = (f cosh d + g sinh d) / h,      Q_k = (f sinh d + g cosh d) / h.
//
//    Where m is 0 a species adds Q_k c_k, a multiple of its concentration: the `level` of a
//    ColumnTerm. Where it is not, P_k and Q_k are `sinh` and `cosh` of the ColumnTerm. A dataset
//    has few different m, the moves of its plan; |m x| <= kMostMove makes short series of sinh
//    and cosh.
//
// 4. Which points take the least step. The rule asks for r = |F1/F|, F1 being the signal after
//    its first step, which is t1 = firstStep/0.001 least steps. r >= kSafeRatio leads to the
//    least step for certain. Over the points of a dataset
//
//      |F1 - F| <= sum of |f_k| c_k ((1 + |t1 g/f|) exp(t1 (|d| + |m| max|x|)) - 1).
//
//    With boundFactor the greatest such bracket over species and parameters, a point is safe if
//    boundFactor (sum of |f_k| c_k) <= kSafeShare |F|. A chunk in which that fails somewhere, its
//    `doubt` being above 0, has F1 worked out for each parameter by testStep. A point still in
//    doubt then leaves the sums of the kernel and gets those derivatives by the rule as it is
//    written. Too many points may go that way, which costs time, but never too few.
//
// 5. The sums. All derivatives at a point are combinations of a few rows, the basis B:
//
//      B_0 = 1,   B_{1+k} = c_k,   and behind them a column for each parameter with a move,
//      sum of c_k (P_k sinh(m_k x) + Q_k cosh(m_k x)) over the species that it moves.
//
//    With D = A B, A constant over the dataset, the sums that the normal equations want are
//
//      sum of D D^T = A (sum of B B^T) A^T,      sum of D (y - F) = A (sum of B (y - F)).
//
//    The loops sum over B, and A is applied once a dataset.
//
// 6. Mass conservation. The mean concentration of a component is a sum over the points,
//    sum of w_j n_k c_k(x_j), with the weights of point_facts.h: the same formulas, the counts n_k
//    in the place of f_k. So the sums of w c, w c sinh(m x) and w c cosh(m x) give value and
//    derivatives of both mass conservation points.
//
// 7. Rounding. All of this is exact but the two series and VectorExp, and those err by a few units
//    in the last place or by less than can be seen (kMostMove). The plain rule loses more:
//    F(a0 + h) - F(a0 - h) cancels some three digits, which D(x) keeps. So both give the same
//    derivative but for the rounding of the plain rule, about 1e-13 |F / (a0 dF/da)| of it. The
//    sums run in lanes that are added in a fixed order, and no multiply-add is fused: every
//    processor gives the same bits, whatever vectors it has. tests/fit/literal_pass_test.cpp
//    holds whole fits against the plain rule.
//
// 8. What takes the plain road (model_pass.cpp) instead, a whole dataset at a time: what the
//    planner refuses (pass_planner.h), mass conservation sums without positive weights
//    (point_facts.h), a mass conservation point that fails the bound of 4, and any arithmetic
//    fault.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "fit/model_terms.h"

namespace quorvane {

// Points worked on together: some vectors of any processor, while the rows of a Chunk, 18 kB,
// stay in its nearest cache.
inline constexpr std::size_t kChunk = 64;

// Fitted parameters that touch a dataset: baseline, two reference concentrations, five of a model.
inline constexpr std::size_t kMostColumns = 8;

// Different m of a dataset. The models have up to five: of two weights, one for each n, and of two
// stoichiometries.
inline constexpr std::size_t kMostMoves = 8;

// Rows of the basis: 1, the concentrations, the columns.
inline constexpr std::size_t kMostBasis = 1 + kMaxSpecies + kMostColumns;

// Greatest |m x|. The first term that the series leave out is then 3e-14 of sinh and 3e-17 of
// cosh. That of sinh falls with the 8th power, and m x of a measured gradient is some 0.01 at most.
inline constexpr double kMostMove = 0.1;

// A point that its first step moves by no more than this share of its value keeps a ratio r of
// kSafeRatio or more. Those lead to the least step: with first steps of 1 % all above 0.1 do, and
// the rest is room for rounding.
inline constexpr double kSafeShare = 0.85;
inline constexpr double kSafeRatio = 1.0 - kSafeShare;

// The concentration of a species over the points.
struct SpeciesPlan {
  // c = exp(constant + slope x), or, if a power is not 0, factor times powers of the first
  // two species.
  double constant = 0.0;  // e
  double slope = 0.0;     // s, 1/cm^2
  double factor = 1.0;
  int powerA = 0;
  int powerB = 0;
  double signal = 0.0;  // f, signal units/mole
};

// A move that species of some parameters have; |rate x| <= kMostMove.
struct RateMove {
  double rate = 0.0;                           // m, 1/cm^2
  bool cosh = false;                           // whether some term has a cosh
  std::array<bool, kMaxSpecies> species = {};  // that move so
};

// What one species adds to a derivative: c (level + sinh sinh(m x) + cosh cosh(m x)).
struct ColumnTerm {
  int move = -1;       // index in SetPlan::move, -1 for none
  double level = 0.0;  // Q without a move
  double sinh = 0.0;   // P
  double cosh = 0.0;   // Q with a move
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
  // The bound on what a first step does, over the sum of |signal| c.
  double boundFactor = 0.0;
};

// The signal after the first step of the rule in one parameter:
//   F1 = F + sum of c (factor exp(rate x) - signal).
struct FirstStepPlan {
  struct Part {
    double factor = 0.0;  // (f + t1 g) exp(t1 d)
    double rate = 0.0;    // t1 m
    double signal = 0.0;  // f
  };
  std::array<Part, kMaxSpecies> parts = {};
};

// One quantity over the points of a chunk, aligned for the widest vectors.
inline constexpr std::size_t kVectorBytes = 64;
struct alignas(kVectorBytes) ChunkRow : std::array<double, kChunk> {};

// The points at hand, and what is found for them: a row for each quantity. Points behind the last
// one of a dataset are to have x, y and weight 0.
struct Chunk {
  ChunkRow x;
  ChunkRow y;
  ChunkRow weight;  // of the mean concentration
  std::array<ChunkRow, kMostMoves> sinh;
  std::array<ChunkRow, kMostMoves> cosh;
  ChunkRow value;
  ChunkRow doubt;     // above 0: doubtful
  ChunkRow residual;  // y - value
  std::array<ChunkRow, kMostBasis> basis;
  ChunkRow& C(std::size_t species) { return basis[1 + species]; }
  const ChunkRow& C(std::size_t species) const { return basis[1 + species]; }
};

// The sums over the points of a dataset, for the rows of the basis and for mass conservation.
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
  // Puts kSafeRatio |F| - |F1| in chunk.doubt, below 0 where a point is safe; returns the greatest.
  double (*testStep)(const SetPlan& plan, const FirstStepPlan& step, Chunk& chunk);
  // Adds the products of the basis and of the residuals.
  void (*addProducts)(const SetPlan& plan, const Chunk& chunk, BasisSums& sums);
  // Adds the weighted sums.
  void (*addWeighted)(const SetPlan& plan, const Chunk& chunk, BasisSums& sums);
};

// The kernels that this machine can run, the fastest first; the last is for any processor.
std::span<const PassKernel> RunnableKernels();

}  // namespace quorvane

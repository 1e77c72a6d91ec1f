#include "fit/pass_kernel.h"

#include <algorithm>
#include <cmath>

#include "fit/vector_exp.h"

namespace quorvane {

#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__)
#define QUORVANE_WIDER_KERNELS 1
#endif
#if defined(__GNUC__)
#define QUORVANE_INLINE [[gnu::always_inline]] inline
#else
#define QUORVANE_INLINE inline
#endif

namespace {

// Sums side by side, added up in a fixed order: one vector of the widest processor, several of the
// others, and never the order of the points.
constexpr int kLanes = 8;
using Lanes = std::array<double, kLanes>;

QUORVANE_INLINE double SumOf(const Lanes& lanes) {
  return ((lanes[0] + lanes[4]) + (lanes[2] + lanes[6])) +
         ((lanes[1] + lanes[5]) + (lanes[3] + lanes[7]));
}

// Sum of left * right over the points.
QUORVANE_INLINE double Dot(const ChunkRow& left, const ChunkRow& right) {
  Lanes lanes = {};
  for (std::size_t j = 0; j < kChunk; j += kLanes) {
    for (std::size_t k = 0; k < kLanes; ++k) lanes[k] += left[j + k] * right[j + k];
  }
  return SumOf(lanes);
}

QUORVANE_INLINE double GreatestOf(const ChunkRow& row) {
  Lanes lanes;
  for (std::size_t k = 0; k < kLanes; ++k) lanes[k] = row[k];
  for (std::size_t j = kLanes; j < kChunk; j += kLanes) {
    for (std::size_t k = 0; k < kLanes; ++k) lanes[k] = std::max(lanes[k], row[j + k]);
  }
  return *std::max_element(lanes.begin(), lanes.end());
}

// sinh t and cosh t by their series to t^7 and t^8, t = rate x; see kMostMove for what is left out.
QUORVANE_INLINE void FillMove(double rate, bool cosh, const ChunkRow& x, ChunkRow& sinhRow,
                              ChunkRow& coshRow) {
  for (std::size_t j = 0; j < kChunk; ++j) {
    const double t = rate * x[j];
    const double q = t * t;
    sinhRow[j] = t * (1.0 + q * (1.0 / 6.0 + q * (1.0 / 120.0 + q * (1.0 / 5040.0))));
  }
  if (!cosh) return;
  for (std::size_t j = 0; j < kChunk; ++j) {
    const double t = rate * x[j];
    const double q = t * t;
    coshRow[j] = 1.0 + q * (0.5 + q * (1.0 / 24.0 + q * (1.0 / 720.0 + q * (1.0 / 40320.0))));
  }
}

QUORVANE_INLINE void FillConcentration(const SpeciesPlan part, Chunk& chunk, ChunkRow& c) {
  if (part.powerA == 0 && part.powerB == 0) {
    for (std::size_t j = 0; j < kChunk; ++j) {
      c[j] = VectorExp(part.constant + part.slope * chunk.x[j]);
    }
    return;
  }
  c.fill(part.factor);
  for (int k = 0; k < part.powerA; ++k) {
    for (std::size_t j = 0; j < kChunk; ++j) c[j] *= chunk.C(0)[j];
  }
  for (int k = 0; k < part.powerB; ++k) {
    for (std::size_t j = 0; j < kChunk; ++j) c[j] *= chunk.C(1)[j];
  }
}

QUORVANE_INLINE void FillValues(const SetPlan& plan, Chunk& chunk) {
  ChunkRow gross;
  gross.fill(0.0);
  chunk.value.fill(plan.baseline);
  for (std::size_t k = 0; k < plan.species; ++k) {
    ChunkRow& c = chunk.C(k);
    FillConcentration(plan.parts[k], chunk, c);
    const double signal = plan.parts[k].signal;
    const double magnitude = std::fabs(signal);
    for (std::size_t j = 0; j < kChunk; ++j) {
      chunk.value[j] += signal * c[j];
      gross[j] += magnitude * c[j];
    }
  }
  const double boundFactor = plan.boundFactor;
  for (std::size_t j = 0; j < kChunk; ++j) {
    chunk.residual[j] = chunk.y[j] - chunk.value[j];
    chunk.doubt[j] = boundFactor * gross[j] - kSafeShare * std::fabs(chunk.value[j]);
  }
}

// Adds to the basis row of `column` the sum of factor(k) c_k times `move`, sinh or cosh of move m,
// over the species that move so; `factor` is one of a term's numbers.
QUORVANE_INLINE void AddMoved(const SetPlan& plan, std::size_t column, std::size_t m,
                              double ColumnTerm::*factor, const ChunkRow& move, Chunk& chunk) {
  const ColumnTerms& terms = plan.terms[column];
  ChunkRow& out = chunk.basis[1 + plan.species + column];
  ChunkRow sum;
  bool any = false;
  for (std::size_t k = 0; k < plan.species; ++k) {
    const double share = terms[k].*factor;
    if (terms[k].move != static_cast<int>(m) || share == 0.0) continue;
    const ChunkRow& c = chunk.C(k);
    if (any) {
      for (std::size_t j = 0; j < kChunk; ++j) sum[j] += share * c[j];
    } else {
      for (std::size_t j = 0; j < kChunk; ++j) sum[j] = share * c[j];
    }
    any = true;
  }
  if (!any) return;
  for (std::size_t j = 0; j < kChunk; ++j) out[j] += sum[j] * move[j];
}

QUORVANE_INLINE double EvaluateRows(const SetPlan& plan, Chunk& chunk) {
  chunk.basis[0].fill(1.0);
  FillValues(plan, chunk);
  for (std::size_t column = 0; column < plan.columns; ++column) {
    chunk.basis[1 + plan.species + column].fill(0.0);
  }
  for (std::size_t m = 0; m < plan.moves; ++m) {
    FillMove(plan.move[m].rate, plan.move[m].cosh, chunk.x, chunk.sinh[m], chunk.cosh[m]);
    for (std::size_t column = 0; column < plan.columns; ++column) {
      AddMoved(plan, column, m, &ColumnTerm::sinh, chunk.sinh[m], chunk);
      AddMoved(plan, column, m, &ColumnTerm::cosh, chunk.cosh[m], chunk);
    }
  }
  return GreatestOf(chunk.doubt);
}

QUORVANE_INLINE double TestStepRows(const SetPlan& plan, const FirstStepPlan& step, Chunk& chunk) {
  ChunkRow stepped = chunk.value;
  for (std::size_t k = 0; k < plan.species; ++k) {
    const FirstStepPlan::Part part = step.parts[k];
    const ChunkRow& c = chunk.C(k);
    if (part.rate != 0.0) {
      for (std::size_t j = 0; j < kChunk; ++j) {
        stepped[j] += c[j] * (part.factor * VectorExp(part.rate * chunk.x[j]) - part.signal);
      }
    } else if (part.factor != part.signal) {
      for (std::size_t j = 0; j < kChunk; ++j) stepped[j] += c[j] * (part.factor - part.signal);
    }
  }
  for (std::size_t j = 0; j < kChunk; ++j) {
    chunk.doubt[j] = kSafeRatio * std::fabs(chunk.value[j]) - std::fabs(stepped[j]);
  }
  return GreatestOf(chunk.doubt);
}

QUORVANE_INLINE void AddProductRows(const SetPlan& plan, const Chunk& chunk, BasisSums& sums) {
  const std::size_t rows = 1 + plan.species + plan.columns;
  sums.squares += Dot(chunk.residual, chunk.residual);
  for (std::size_t l = 0; l < rows; ++l) {
    const ChunkRow& row = chunk.basis[l];
    sums.gradient[l] += Dot(row, chunk.residual);
    for (std::size_t m = 0; m <= l; ++m) sums.product[l][m] += Dot(row, chunk.basis[m]);
  }
}

QUORVANE_INLINE void AddWeightedRows(const SetPlan& plan, const Chunk& chunk, BasisSums& sums) {
  ChunkRow share;
  for (std::size_t k = 0; k < plan.species; ++k) {
    const ChunkRow& c = chunk.C(k);
    sums.level[k] += Dot(chunk.weight, c);
    for (std::size_t j = 0; j < kChunk; ++j) share[j] = chunk.weight[j] * c[j];
    for (std::size_t m = 0; m < plan.moves; ++m) {
      if (!plan.move[m].species[k]) continue;
      sums.sinh[m][k] += Dot(share, chunk.sinh[m]);
      if (plan.move[m].cosh) sums.cosh[m][k] += Dot(share, chunk.cosh[m]);
    }
  }
}

double Evaluate(const SetPlan& plan, Chunk& chunk) {
  return EvaluateRows(plan, chunk);
}
double TestStep(const SetPlan& plan, const FirstStepPlan& step, Chunk& chunk) {
  return TestStepRows(plan, step, chunk);
}
void AddProducts(const SetPlan& plan, const Chunk& chunk, BasisSums& sums) {
  AddProductRows(plan, chunk, sums);
}
void AddWeighted(const SetPlan& plan, const Chunk& chunk, BasisSums& sums) {
  AddWeightedRows(plan, chunk, sums);
}

// The same code for processors with wider vectors.
#if defined(QUORVANE_WIDER_KERNELS)
[[gnu::target("avx2")]] double EvaluateAvx2(const SetPlan& plan, Chunk& chunk) {
  return EvaluateRows(plan, chunk);
}
[[gnu::target("avx2")]] double TestStepAvx2(const SetPlan& plan, const FirstStepPlan& step,
                                            Chunk& chunk) {
  return TestStepRows(plan, step, chunk);
}
[[gnu::target("avx2")]] void AddProductsAvx2(const SetPlan& plan, const Chunk& chunk,
                                             BasisSums& sums) {
  AddProductRows(plan, chunk, sums);
}
[[gnu::target("avx2")]] void AddWeightedAvx2(const SetPlan& plan, const Chunk& chunk,
                                             BasisSums& sums) {
  AddWeightedRows(plan, chunk, sums);
}
[[gnu::target("avx512f,avx512dq,prefer-vector-width=512")]] double EvaluateAvx512(
    const SetPlan& plan, Chunk& chunk) {
  return EvaluateRows(plan, chunk);
}
[[gnu::target("avx512f,avx512dq,prefer-vector-width=512")]] double TestStepAvx512(
    const SetPlan& plan, const FirstStepPlan& step, Chunk& chunk) {
  return TestStepRows(plan, step, chunk);
}
[[gnu::target("avx512f,avx512dq,prefer-vector-width=512")]] void AddProductsAvx512(
    const SetPlan& plan, const Chunk& chunk, BasisSums& sums) {
  AddProductRows(plan, chunk, sums);
}
[[gnu::target("avx512f,avx512dq,prefer-vector-width=512")]] void AddWeightedAvx512(
    const SetPlan& plan, const Chunk& chunk, BasisSums& sums) {
  AddWeightedRows(plan, chunk, sums);
}
#endif

}  // namespace

std::span<const PassKernel> RunnableKernels() {
  static constexpr PassKernel kPortable = {"any", Evaluate, TestStep, AddProducts, AddWeighted};
#if defined(QUORVANE_WIDER_KERNELS)
  static constexpr std::array<PassKernel, 3> kernels = {
      {{"AVX-512", EvaluateAvx512, TestStepAvx512, AddProductsAvx512, AddWeightedAvx512},
       {"AVX2", EvaluateAvx2, TestStepAvx2, AddProductsAvx2, AddWeightedAvx2},
       kPortable}};
  const bool widest = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq");
  const std::size_t skipped = widest ? 0 : __builtin_cpu_supports("avx2") ? 1 : 2;
  return std::span(kernels).subspan(skipped);
#else
  return {&kPortable, 1};
#endif
}

}  // namespace quorvane

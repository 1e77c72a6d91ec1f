#include "scan/dataset.h"

#include <algorithm>

#include "base/text.h"

namespace quorvane {

namespace {

template <std::size_t N>
std::string TextOf(const FixedText<N>& text) {
  return Cp1252ToUtf8(Trim(text.View()));
}

}  // namespace

Dataset EmptyDataset() {
  Dataset dataset{};
  dataset.FileName.SetBytes("");
  dataset.FilePath.SetBytes("");
  dataset.Comment1.SetBytes("");
  dataset.Comment2.SetBytes("");
  dataset.RefConc = 0.5;
  dataset.RefConc2 = 0.5;
  dataset.ExtCoeff = 1.0;
  dataset.ExtCoeff2 = 1.0;
  dataset.ALoad = kDefaultLoad;
  dataset.BLoad = kDefaultLoad;
  return dataset;
}

std::string NameOf(const Dataset& dataset) {
  return TextOf(dataset.FileName);
}
std::string PathOf(const Dataset& dataset) {
  return TextOf(dataset.FilePath);
}
std::string Comment1Of(const Dataset& dataset) {
  return TextOf(dataset.Comment1);
}
std::string Comment2Of(const Dataset& dataset) {
  return TextOf(dataset.Comment2);
}

bool IsBlank(const Dataset& dataset) {
  return dataset.FileName.View().starts_with("BL_");
}

bool IsBlanked(const Dataset& dataset) {
  return Trim(dataset.Comment2.View()).ends_with("BL");
}

double FirstRadius(const Dataset& dataset) {
  return dataset.NumPoints == 0 ? 0.0 : dataset.R.front();
}

double LastRadius(const Dataset& dataset) {
  return dataset.NumPoints == 0 ? 0.0 : dataset.R[static_cast<std::size_t>(dataset.NumPoints - 1)];
}

int CountGoodPoints(const Dataset& dataset) {
  const auto end = dataset.Good.begin() + dataset.NumPoints;
  return dataset.NumPoints - static_cast<int>(std::count(dataset.Good.begin(), end, kFalse));
}

}  // namespace quorvane

#include "scan/blank.h"

#include "base/host.h"
#include "base/number_format.h"
#include "base/text.h"

namespace quorvane {

namespace {

// Appends the mark by which a blanked dataset is known; the mark is kept even if the line is full.
void MarkAsBlanked(Dataset& dataset) {
  constexpr std::string_view kMark = " BL";
  constexpr std::size_t kRoom = sizeof(dataset.Comment2.bytes) - kMark.size();
  const std::string header(Trim(dataset.Comment2.View()));
  dataset.Comment2.SetBytes(header.substr(0, kRoom) + std::string(kMark));
}

}  // namespace

void SubtractBlank(Dataset& sample, const Dataset& blank, std::int16_t& above,
                   std::int16_t& below) {
  above = 0;
  below = 0;
  const auto n = static_cast<std::size_t>(sample.NumPoints);
  const auto m = static_cast<std::size_t>(blank.NumPoints);
  if (n == 0 || m < 2) return;  // nothing to interpolate between
  const auto& r = sample.R;
  const auto& b = blank.R;
  if (r[0] < b[0] && r[n - 1] <= b[0]) {
    below = sample.NumPoints;
    return;
  }
  if (r[0] >= b[m - 1] && r[n - 1] > b[m - 1]) {
    above = sample.NumPoints;
    return;
  }
  std::size_t j = 1;
  for (std::size_t k = 0; k < n; ++k) {
    if (r[k] < b[0]) {
      sample.C[k] -= blank.C[0];
      ++below;
    } else if (r[k] > b[m - 1]) {
      sample.C[k] -= blank.C[m - 1];
      ++above;
    } else {
      while (r[k] > b[j]) {
        if (j == m - 1) return;
        ++j;
      }
      if (b[j] == b[j - 1]) {  // a radius that stands twice: nothing to interpolate
        sample.C[k] -= blank.C[j];
        continue;
      }
      sample.C[k] = sample.C[k] - blank.C[j - 1] -
                    (blank.C[j] - blank.C[j - 1]) * (r[k] - b[j - 1]) / (b[j] - b[j - 1]);
    }
  }
}

void BlankDataset(DatasetStore& store, int position, int blank, Host& host) {
  Dataset& sample = store.Datasets[static_cast<std::size_t>(position)];
  std::int16_t above = 0;
  std::int16_t below = 0;
  SubtractBlank(sample, store.Datasets[static_cast<std::size_t>(blank)], above, below);
  MarkAsBlanked(sample);
  host.PrintIt(DatasetTitle(store, position) + " was blanked using\r\n" +
               DatasetTitle(store, blank));
  host.PrintIt("Number of points outside the range of the blank were :: \r\nBelow : " +
               FormatNumber(below, "##0") + "\r\nAbove : " + FormatNumber(above, "##0"));
}

}  // namespace quorvane

// Scan texts and Datasets made from a few numbers, and a session to load them in.
#pragma once

#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "scan/cell_geometry.h"
#include "scan/dataset_store.h"
#include "support/recording_host.h"
#include "support/temp_folder.h"

namespace quorvane {

//                                           123456789012345678901234567890123456789
inline constexpr const char* kHeader = "R 3 20.5 20000 0099999 1.0000E12 280 21";

struct Session {
  TempFolder folder;
  DatasetStore store;
  RecordingHost host;
};

// Names of the loaded datasets.
inline std::vector<std::string> NamesOf(const DatasetStore& store) {
  std::vector<std::string> names;
  for (const Dataset& dataset : store.Datasets) names.push_back(NameOf(dataset));
  return names;
}

// One row as the instrument writes it.
inline std::string Row(double r, double c = 0.25, double err = 0.01) {
  std::array<char, 80> text{};
  std::snprintf(text.data(), text.size(), "%9.4f  %13.5E   %13.5E\r\n", r, c, err);
  return text.data();
}

// `count` rows from radius `first` on.
inline std::string Rows(double first, double step, int count) {
  std::string rows;
  for (int k = 0; k < count; ++k) rows += Row(first + step * k);
  return rows;
}

inline std::string ScanText(const std::string& rows, const std::string& header = kHeader,
                            const std::string& comment = "a comment") {
  return comment + "\r\n" + header + "\r\n" + rows;
}

// A dataset of the given radii with signals `c`, by default 0, and standard deviation 0.01.
inline Dataset MakeDataset(const std::string& name, const std::vector<double>& r,
                           const std::vector<double>& c = {}) {
  Dataset dataset = EmptyDataset();
  dataset.FileName.SetBytes(name);
  dataset.Comment2.SetBytes(kHeader);
  dataset.NumPoints = static_cast<std::int16_t>(r.size());
  for (std::size_t k = 0; k < r.size(); ++k) {
    dataset.R[k] = r[k];
    dataset.C[k] = k < c.size() ? c[k] : 0.0;
    dataset.Err[k] = 0.01;
    dataset.Good[k] = kTrue;
  }
  dataset.RefRadius = CalcRefRadius(dataset);
  return dataset;
}

}  // namespace quorvane

#include "archive/data_member.h"

#include <cmath>

namespace quorvane {

namespace {

constexpr std::size_t kHeadSize = 4 + 4 + 255;
constexpr std::size_t kOldPageSize = 8 * sizeof(double);
constexpr std::size_t kOldRecordSize = 54124;
constexpr std::size_t kRecordSize = 62316;

template <std::size_t N>
void ReadText(ByteReader& in, FixedText<N>& text, const char* what) {
  text.SetBytes(TextOf(in.Raw(N, what)));
}

// The record's fields up to and including Good, which the old layout has as well.
void WriteOldFields(ByteWriter& out, const Dataset& dataset) {
  out.Raw(dataset.FileName.View());
  out.Raw(dataset.FilePath.View());
  out.Raw(dataset.Comment1.View());
  out.Raw(dataset.Comment2.View());
  out.Int16(dataset.NumPoints);
  out.Int32(dataset.Speed);
  out.Int16(dataset.Wavelength);
  out.Float(dataset.Temperature);
  for (const double value : {dataset.RefRadius, dataset.RefConc, dataset.RefConc2, dataset.Offset,
                             dataset.ExtCoeff, dataset.ExtCoeff2, dataset.Rbase, dataset.Rmen}) {
    out.Double(value);
  }
  out.Doubles(dataset.R);
  out.Doubles(dataset.C);
  out.Doubles(dataset.Err);
  for (const std::int16_t good : dataset.Good) out.Int16(good);
}

void ReadOldFields(ByteReader& in, Dataset& dataset) {
  ReadText(in, dataset.FileName, "FileName");
  ReadText(in, dataset.FilePath, "FilePath");
  ReadText(in, dataset.Comment1, "Comment1");
  ReadText(in, dataset.Comment2, "Comment2");
  dataset.NumPoints = in.Int16("NumPoints");
  dataset.Speed = in.Int32("Speed");
  dataset.Wavelength = in.Int16("Wavelength");
  dataset.Temperature = in.Float("Temperature");
  for (double* field : {&dataset.RefRadius, &dataset.RefConc, &dataset.RefConc2, &dataset.Offset,
                        &dataset.ExtCoeff, &dataset.ExtCoeff2, &dataset.Rbase, &dataset.Rmen}) {
    *field = in.Double("dataset record");
  }
  in.Doubles(dataset.R, "R");
  in.Doubles(dataset.C, "C");
  in.Doubles(dataset.Err, "Err");
  for (std::int16_t& good : dataset.Good) good = in.Int16("Good");
}

void ReadNewFields(ByteReader& in, Dataset& dataset) {
  dataset.ALoad = in.Double("ALoad");
  dataset.BLoad = in.Double("BLoad");
  dataset.Edited = in.Double("Edited");
  in.Doubles(dataset.Spare, "Spare");
}

void WritePage(ByteWriter& out, const FitPage& page) {
  for (const double value :
       {page.ModelMW, page.ModelMWB, page.ModelVirial, page.ModelN1, page.ModelN2, page.ModelLnK1,
        page.ModelLnK2, page.ModelAlpha, page.ModelLnK3, page.Vbar, page.VbarB, page.Density,
        page.ModelIndex}) {
    out.Double(value);
  }
  out.Doubles(page.FitPageSpare);
}

// The eight values that both layouts begin the page with.
void ReadOldPage(ByteReader& in, FitPage& page) {
  for (double* field : {&page.ModelMW, &page.ModelMWB, &page.ModelVirial, &page.ModelN1,
                        &page.ModelN2, &page.ModelLnK1, &page.ModelLnK2, &page.ModelAlpha}) {
    *field = in.Double("parameter page");
  }
}

void ReadPage(ByteReader& in, FitPage& page) {
  ReadOldPage(in, page);
  for (double* field :
       {&page.ModelLnK3, &page.Vbar, &page.VbarB, &page.Density, &page.ModelIndex}) {
    *field = in.Double("parameter page");
  }
  in.Doubles(page.FitPageSpare, "parameter page");
}

void CheckFinite(const std::string& where, std::initializer_list<double> values) {
  for (const double value : values) {
    if (!std::isfinite(value)) {
      throw ArchiveFault("datafile.bin: " + where + " holds a value that is not finite");
    }
  }
}

// Numbers that the program would stumble over; places behind NumPoints and spare ones may hold
// anything.
void CheckDataset(const Dataset& dataset, std::size_t number) {
  const std::string where = "dataset " + std::to_string(number);
  if (dataset.NumPoints < 0 || dataset.NumPoints > kMaxPoints) {
    throw ArchiveFault("datafile.bin: " + where + " claims to have " +
                       std::to_string(dataset.NumPoints) + " points");
  }
  CheckFinite(where, {static_cast<double>(dataset.Temperature), dataset.RefRadius, dataset.RefConc,
                      dataset.RefConc2, dataset.Offset, dataset.ExtCoeff, dataset.ExtCoeff2,
                      dataset.Rbase, dataset.Rmen, dataset.ALoad, dataset.BLoad, dataset.Edited});
  for (std::size_t k = 0; k < static_cast<std::size_t>(dataset.NumPoints); ++k) {
    CheckFinite(where + ", point " + std::to_string(k + 1),
                {dataset.R[k], dataset.C[k], dataset.Err[k]});
  }
}

void CheckExperiment(const Experiment& experiment) {
  const FitPage& page = experiment.FitPage;
  CheckFinite("the parameter page", {page.ModelMW, page.ModelMWB, page.ModelVirial, page.ModelN1,
                                     page.ModelN2, page.ModelLnK1, page.ModelLnK2, page.ModelAlpha,
                                     page.ModelLnK3, page.Vbar, page.VbarB, page.Density});
  std::size_t number = 0;
  for (const Dataset& dataset : experiment.Datasets) CheckDataset(dataset, ++number);
}

std::size_t CheckedCount(ByteReader& in, std::size_t length, std::size_t pageSize,
                         std::size_t recordSize) {
  const std::int32_t count = in.Int32("NumDatasets");
  const std::size_t needed =
      kHeadSize + pageSize + recordSize * static_cast<std::size_t>(std::max(count, 0));
  if (count < 0 || needed != length) {
    throw ArchiveFault("datafile.bin: " + std::to_string(count) + " datasets do not make " +
                       std::to_string(length) + " bytes");
  }
  return static_cast<std::size_t>(count);
}

}  // namespace

Bytes WriteDataMember(const Experiment& experiment) {
  CheckExperiment(experiment);
  ByteWriter out;
  out.Int32(kCurrentLayout);
  out.Int32(static_cast<std::int32_t>(experiment.Datasets.size()));
  out.Raw(experiment.directory.View());
  WritePage(out, experiment.FitPage);
  for (const Dataset& dataset : experiment.Datasets) {
    WriteOldFields(out, dataset);
    out.Double(dataset.ALoad);
    out.Double(dataset.BLoad);
    out.Double(dataset.Edited);
    out.Doubles(dataset.Spare);
  }
  return out.Take();
}

void ReadDataMember(std::span<const std::byte> bytes, Experiment& experiment) {
  ByteReader in("datafile.bin", bytes);
  experiment.layout = in.Int32("version");
  const bool old = experiment.layout == kOldLayout;
  if (!old && experiment.layout != kCurrentLayout) {
    throw UnknownLayout("datafile.bin: there is no layout " + std::to_string(experiment.layout));
  }
  const std::size_t count = CheckedCount(in, bytes.size(), old ? kOldPageSize : sizeof(FitPage),
                                         old ? kOldRecordSize : kRecordSize);
  ReadText(in, experiment.directory, "directory");
  experiment.FitPage = {};
  if (old) {
    experiment.FitPage.ModelLnK3 = 14.0;
    ReadOldPage(in, experiment.FitPage);
  } else {
    ReadPage(in, experiment.FitPage);
  }
  experiment.Datasets.assign(count, EmptyDataset());
  for (Dataset& dataset : experiment.Datasets) {
    ReadOldFields(in, dataset);
    if (!old) ReadNewFields(in, dataset);
  }
  CheckExperiment(experiment);
}

}  // namespace quorvane

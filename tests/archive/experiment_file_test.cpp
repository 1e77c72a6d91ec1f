#include "archive/experiment_file.h"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "archive/archive_samples.h"
#include "archive/chart_member.h"
#include "archive/data_member.h"
#include "archive/zip_file.h"
#include "base/files.h"
#include "support/temp_folder.h"

using namespace quorvane;

namespace {

Experiment Read(const TempFolder& folder, const StoredMembers& members) {
  folder.Write("a.exz", StoredZip(members));
  return ReadExperimentFile(folder / "a.exz").experiment;
}

// What the refusal says; "" if nothing is refused.
std::string Refusal(const TempFolder& folder, const std::string& bytes) {
  folder.Write("bad.exz", bytes);
  try {
    ReadExperimentFile(folder / "bad.exz");
  } catch (const ArchiveFault& fault) {
    return fault.what();
  }
  return "";
}

}  // namespace

TEST(ReadExperimentFile, TakesEveryFieldFromItsPlace) {
  const TempFolder folder;
  const Experiment experiment = Read(folder, SampleMembers());
  EXPECT_EQ(experiment.layout, 51916);
  EXPECT_EQ(experiment.directory.View().substr(0, 8), "C:\\lab  ");
  const FitPage& page = experiment.FitPage;
  const std::vector<double> values = {
      page.ModelMW,   page.ModelMWB,  page.ModelVirial, page.ModelN1,   page.ModelN2,
      page.ModelLnK1, page.ModelLnK2, page.ModelAlpha,  page.ModelLnK3, page.Vbar,
      page.VbarB,     page.Density,   page.ModelIndex};
  EXPECT_EQ(values, (std::vector<double>{1.5, 2.5, 3.5, 4.5, 5.5, 6.5, 7.5, 8.5, 9.5, 0.75, 0.74,
                                         1.01, 3.0}));
  ASSERT_EQ(experiment.Datasets.size(), 2U);
  const Dataset& dataset = experiment.Datasets.front();
  EXPECT_EQ(NameOf(dataset), "a.dat");
  EXPECT_EQ(PathOf(dataset), "/lab/run7/a.dat");
  EXPECT_EQ(Comment1Of(dataset), "first line");
  EXPECT_EQ(Comment2Of(dataset), "R 3 20.0 20000 0086400");
  EXPECT_EQ(dataset.NumPoints, 3);
  EXPECT_EQ(dataset.Speed, 20000);
  EXPECT_EQ(dataset.Wavelength, 280);
  EXPECT_EQ(dataset.Temperature, 20.5F);
  const std::vector<double> fields = {
      dataset.RefRadius, dataset.RefConc, dataset.RefConc2, dataset.Offset, dataset.ExtCoeff,
      dataset.ExtCoeff2, dataset.Rbase,   dataset.Rmen,     dataset.R[1],   dataset.C[2],
      dataset.Err[0],    dataset.ALoad,   dataset.BLoad,    dataset.Edited};
  EXPECT_EQ(fields, (std::vector<double>{6.5, 0.25, 0.125, 0.01, 1.5, 2.5, 7.1, 5.9, 6.4 * 2,
                                         0.3 * 3, 0.004, 2e-6, 3e-6, 1.0}));
  EXPECT_EQ(dataset.Good[0], kTrue);
  EXPECT_EQ(dataset.Good[1], kFalse);
  EXPECT_EQ(experiment.log, "{\\rtf1 log}");
  ASSERT_EQ(experiment.GraphStreams.size(), 2U);
  EXPECT_EQ(TextOf(experiment.GraphStreams[0]), "abc");
  EXPECT_TRUE(experiment.GraphStreams[1].empty());
}

TEST(ReadExperimentFile, TakesUpTheOldLayout) {
  const TempFolder folder;
  StoredMembers members = SampleMembers();
  members[0].second = DataHead(51919, 1) + OldPage() + OldRecord("old.dat");
  const Experiment experiment = Read(folder, members);
  EXPECT_EQ(experiment.FitPage.ModelAlpha, 8.5);
  EXPECT_EQ(experiment.FitPage.ModelLnK3, 14.0);
  const Dataset& dataset = experiment.Datasets.at(0);
  EXPECT_EQ(dataset.Err[2], 0.004 * 3);
  EXPECT_EQ(dataset.ALoad, 1e-6);
  EXPECT_EQ(dataset.BLoad, 1e-6);
  EXPECT_EQ(dataset.Edited, 0.0);
}

TEST(WriteExperimentFile, WritesTheBytesThatWereRead) {
  const TempFolder folder;
  const StoredMembers members = SampleMembers();
  const Experiment experiment = Read(folder, members);
  for (const char* name : {"first.exz", "second.exz"}) {
    WriteExperimentFile(folder / name, experiment);
    const auto written =
        ReadZip(ReadText(folder / name), {"datafile.bin", "logfile.rtf", "chartfile.bin"});
    ASSERT_EQ(written.size(), members.size());
    for (std::size_t k = 0; k < members.size(); ++k) {
      EXPECT_TRUE(TextOf(written[k].bytes) == members[k].second) << members[k].first;
    }
  }
  EXPECT_TRUE(ReadText(folder / "first.exz") == ReadText(folder / "second.exz"));
  EXPECT_EQ(WriteChartMember({}).size(), 2U);
}

TEST(WriteExperimentFile, RefusesWhatItCouldNotReadBack) {
  const TempFolder folder;
  Experiment experiment = Read(folder, SampleMembers());
  const std::string before = ReadText(folder / "a.exz");
  experiment.Datasets[0].C[1] = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THROW(WriteExperimentFile(folder / "a.exz", experiment), ArchiveFault);
  experiment.Datasets[0].C[1] = 0.0;
  experiment.Datasets[0].C[3] = std::numeric_limits<double>::quiet_NaN();  // behind NumPoints
  EXPECT_NO_THROW(WriteExperimentFile(folder / "b.exz", experiment));
  experiment.GraphStreams.resize(32768);
  EXPECT_THROW(WriteExperimentFile(folder / "a.exz", experiment), ArchiveFault);
  EXPECT_TRUE(ReadText(folder / "a.exz") == before);
  EXPECT_THROW(WriteExperimentFile(folder / "no" / "a.exz", Read(folder, SampleMembers())),
               FileFault);
}

namespace {

// A damaged archive and the beginning of what is said of it.
struct Lie {
  std::string bytes;
  const char* says;
};

void ExpectRefused(const std::vector<Lie>& lies) {
  const TempFolder folder;
  for (const Lie& lie : lies) {
    const std::string refusal = Refusal(folder, lie.bytes);
    EXPECT_NE(refusal.find(lie.says), std::string::npos) << lie.says << " | " << refusal;
    EXPECT_FALSE(refusal.empty()) << lie.says;
  }
}

}  // namespace

TEST(ReadExperimentFile, RefusesLiesOfTheArchive) {
  StoredMembers folders = SampleMembers();
  folders[0].first = "../datafile.bin";
  StoredMembers twice = SampleMembers();
  twice.push_back(twice[0]);
  std::string spoiled = StoredZip(SampleMembers());
  spoiled[60000] = static_cast<char>(spoiled[60000] + 1);
  std::string huge = StoredZip(SampleMembers());
  huge.replace(huge.find("PK\1\2") + 24, 4, LittleEndian(0x20000000, 4));
  ExpectRefused({{"", "is empty"},
                 {"no archive at all", "the archive: "},
                 {StoredZip({}), "holds no datafile.bin"},
                 {StoredZip(folders), "holds no datafile.bin"},
                 {StoredZip(twice), "the archive: "},
                 {spoiled, "datafile.bin: "},
                 {huge, "the archive: "},
                 {StoredZip(SampleMembers()) + "tail", "the archive: "}});
}

TEST(ReadExperimentFile, RefusesLiesOfItsMembers) {
  const auto with = [](std::size_t member, std::size_t at, const std::string& bytes) {
    StoredMembers members = SampleMembers();
    members[member].second.replace(at, bytes.size(), bytes);
    return StoredZip(members);
  };
  const auto longer = [](std::size_t member) {
    StoredMembers members = SampleMembers();
    members[member].second += 'x';
    return StoredZip(members);
  };
  const std::size_t first = 4431;
  const std::string nan = Number(std::numeric_limits<double>::quiet_NaN());
  ExpectRefused({
      {with(0, 0, LittleEndian(51917, 4)), "no layout 51917"},
      {with(0, 0, LittleEndian(51919, 4)), "2 datasets do not make"},
      {with(0, 4, LittleEndian(3, 4)), "3 datasets do not make"},
      {with(0, 4, LittleEndian(0xFFFFFFFF, 4)), "-1 datasets do not make"},
      {longer(0), "2 datasets do not make"},
      {with(0, first + 800, LittleEndian(2049, 2)), "dataset 1 claims to have 2049 points"},
      {with(0, first + 800, LittleEndian(0xFFFF, 2)), "dataset 1 claims to have -1 points"},
      {with(0, first + 62316 + 820, nan), "dataset 2 holds a value"},
      {with(0, first + 876 + 8, nan), "dataset 1, point 2 holds a value"},
      {with(0, 263 + 72, nan), "the parameter page holds a value"},
      {with(2, 0, LittleEndian(0xFFFF, 2)), "bad NumGraphs at byte 2"},
      {with(2, 0, LittleEndian(3, 2)), "bad type of a graph"},
      {with(2, 2, LittleEndian(0x2008, 2)), "bad type of a graph"},
      {with(2, 4, LittleEndian(2, 2)), "bad dimensions"},
      {with(2, 6, LittleEndian(0xFFFFFFF0, 4)), "bad length of a graph"},
      {with(2, 10, LittleEndian(1, 4)), "bad lower bound"},
      {longer(2), "bad end"},
  });
}

TEST(ReadExperimentFile, GoesOnWithoutLogAndGraphs) {
  const TempFolder folder;
  folder.Write("a.exz", StoredZip({SampleMembers()[0]}));
  const ReadExperiment read = ReadExperimentFile(folder / "a.exz");
  EXPECT_EQ(read.warnings.size(), 2U);
  EXPECT_TRUE(read.experiment.log.empty());
  EXPECT_TRUE(read.experiment.GraphStreams.empty());
}

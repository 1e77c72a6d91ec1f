// Writing and reading the RTF of a long session's log.
#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "rtf/picture_file.h"
#include "rtf/rich_text.h"
#include "rtf/rtf_reader.h"
#include "rtf/rtf_writer.h"

using namespace quorvane;

namespace {

// A PNG header and 30 KB behind it: neither side looks further than the header.
std::string PictureBytes() {
  std::string bytes("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\x04\xB0\0\0\x03\x84", 24);
  std::mt19937 random(3);
  while (bytes.size() < 30'000) bytes += static_cast<char>(random() % 256);
  return bytes;
}

// 20,000 lines, every tenth in bold, and 20 pictures.
RichText LongLog() {
  CharFormat bold;
  bold.bold = true;
  RichText log;
  for (int line = 0; line < 20'000; ++line) {
    AppendText(log,
               "  " + std::to_string(line) +
                   "  Variance Ratio at the minimum 1.2345E-03 \u00B1 2 \u03C3\r\n",
               line % 10 == 0 ? bold : CharFormat{});
    if (line % 1000 == 0) AppendPicture(log, PictureFromFile(PictureBytes()));
  }
  return log;
}

void WriteLog(benchmark::State& state) {
  const RichText log = LongLog();
  std::size_t size = 0;
  for (auto _ : state) size = WriteRtf(log).size();
  state.counters["bytes"] = static_cast<double>(size);
}

void ReadLog(benchmark::State& state) {
  const RichText log = LongLog();
  const std::string rtf = WriteRtf(log);
  for (auto _ : state) {
    if (ReadRtf(rtf).text != log) state.SkipWithError("the log came back changed");
  }
}

}  // namespace

BENCHMARK(WriteLog)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadLog)->Unit(benchmark::kMillisecond);

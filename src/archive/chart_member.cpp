#include "archive/chart_member.h"

#include <limits>

namespace quorvane {

namespace {

constexpr std::uint16_t kByteArray = 0x2011;

}  // namespace

Bytes WriteChartMember(const std::vector<Bytes>& graphs) {
  if (graphs.size() > static_cast<std::size_t>(std::numeric_limits<std::int16_t>::max())) {
    throw ArchiveFault("an archive holds at most 32767 graphs");
  }
  ByteWriter out;
  out.Int16(static_cast<std::int16_t>(graphs.size()));
  for (const Bytes& graph : graphs) {
    out.Unsigned16(kByteArray);
    out.Unsigned16(1);  // dimensions
    out.Unsigned32(static_cast<std::uint32_t>(graph.size()));
    out.Int32(0);  // lower bound
    out.Raw(graph);
  }
  return out.Take();
}

std::vector<Bytes> ReadChartMember(std::span<const std::byte> bytes) {
  ByteReader in("chartfile.bin", bytes);
  const std::int16_t count = in.Int16("NumGraphs");
  if (count < 0) in.Fail("NumGraphs");
  std::vector<Bytes> graphs;
  for (std::int16_t k = 0; k < count; ++k) {
    if (in.Unsigned16("type of a graph") != kByteArray) in.Fail("type of a graph");
    if (in.Unsigned16("dimensions of a graph") != 1) in.Fail("dimensions of a graph");
    const std::uint32_t size = in.Unsigned32("length of a graph");
    if (in.Int32("lower bound of a graph") != 0) in.Fail("lower bound of a graph");
    const auto graph = in.Raw(size, "length of a graph");
    graphs.emplace_back(graph.begin(), graph.end());
  }
  if (!in.AtEnd()) in.Fail("end");
  return graphs;
}

}  // namespace quorvane

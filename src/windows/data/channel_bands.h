// Where the channels of a centerpiece lie, as stretches of a chart against the radius.
#pragma once

#include <vector>

#include "plot/chart_widget.h"
#include "scan/channel_windows.h"

namespace quorvane {

// None for 2 channels, of which nothing is cut out.
inline std::vector<ChartBand> ChannelBands(Centerpiece centerpiece) {
  std::vector<ChartBand> bands;
  if (centerpiece == Centerpiece::kTwoChannels) return bands;
  const auto column = static_cast<std::size_t>(centerpiece);
  for (std::size_t c = 0; c < static_cast<std::size_t>(ChannelCount(centerpiece)); ++c) {
    bands.push_back({static_cast<double>(ChannelLowRadius[c][column]),
                     static_cast<double>(ChannelHighRadius[c][column]),
                     QString(QLatin1Char(ChannelLetters[c]))});
  }
  return bands;
}

}  // namespace quorvane

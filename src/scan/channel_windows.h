// Where the solution columns of a centerpiece lie: the radial windows by which one scan file is
// cut into channels.
#pragma once

#include <array>

namespace quorvane {

// Kinds of centerpiece; the value is the column of the window tables.
enum class Centerpiece { kTwoChannels = 0, kSixChannels = 1, kEightChannels = 2 };

inline constexpr int kMaxChannels = 4;

// Letters of the channels, by row of the window tables.
inline constexpr std::array<char, kMaxChannels> ChannelLetters = {'A', 'B', 'C', 'D'};

// Column 3 of the tables, for the kind "EL": its window is in units of r^2/2 (cm^2).
inline constexpr int kElectrophoresisColumn = 3;

using ChannelTable = std::array<std::array<float, 4>, kMaxChannels>;  // [channel][column], cm

// Lower and upper bounds of the windows, both inclusive.
extern const ChannelTable ChannelLowRadius;
extern const ChannelTable ChannelHighRadius;

// Channels that the centerpiece offers: 1, 3 or 4.
int ChannelCount(Centerpiece centerpiece);

}  // namespace quorvane

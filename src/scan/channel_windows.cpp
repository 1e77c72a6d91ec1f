#include "scan/channel_windows.h"

namespace quorvane {

// Rows A to D; columns "2 channels", "6 channels", "8 channels", "EL".
const ChannelTable ChannelLowRadius = {{
    {5.60F, 5.70F, 6.03F, 0.0F},
    {0.0F, 6.20F, 6.34F, 0.0F},
    {0.0F, 6.75F, 6.65F, 0.0F},
    {0.0F, 0.0F, 6.96F, 0.0F},
}};
const ChannelTable ChannelHighRadius = {{
    {7.30F, 6.30F, 6.34F, 10.0F},
    {0.0F, 6.83F, 6.65F, 0.0F},
    {0.0F, 7.30F, 6.96F, 0.0F},
    {0.0F, 0.0F, 7.27F, 0.0F},
}};

int ChannelCount(Centerpiece centerpiece) {
  switch (centerpiece) {
    case Centerpiece::kSixChannels:
      return 3;
    case Centerpiece::kEightChannels:
      return 4;
    case Centerpiece::kTwoChannels:
      break;
  }
  return 1;
}

}  // namespace quorvane

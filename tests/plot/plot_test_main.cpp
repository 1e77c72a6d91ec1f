// Runs the tests under the same application object as a command line program has.
#include <gtest/gtest.h>

#include "plot/offscreen.h"

using namespace quorvane;

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const OffscreenDrawing drawing;
  return RUN_ALL_TESTS();
}

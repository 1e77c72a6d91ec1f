#include "core/program_state.h"

#include "base/clock.h"
#include "base/host.h"

namespace quorvane {

const char* ProgramVersion() {
  return QUORVANE_VERSION;
}

void LogHead(Host& host) {
  host.PrintIt(std::string("Quorvane - Version ") + ProgramVersion());
  host.PrintIt(DateAndTimeText());
}

}  // namespace quorvane

// Variables of the environment.
#pragma once

#include <string>

namespace quorvane {

// The value of a variable as UTF-8; empty if it is not set.
std::string Environment(const char* name);

}  // namespace quorvane

// The system log as a test sees it: what the program writes there is kept instead.
#pragma once

#include <string>
#include <vector>

namespace systemlog {

// Every line since the last call.
std::vector<std::string> take();

}  // namespace systemlog

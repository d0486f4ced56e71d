// Keeps what the program writes to the system log, for tests.
#pragma once

#include <string>
#include <vector>

namespace systemlog {

// Every line since the last call.
std::vector<std::string> take();

}  // namespace systemlog

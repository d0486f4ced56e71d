// The way from a button to another program.
#pragma once

#include <functional>
#include <string>

// Asks for `address` to be opened. `completion`, which may be null, hears whether it was taken.
void openAddress(const std::string& address, std::function<void(bool)> completion = {});

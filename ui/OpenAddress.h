// The way from a button to another program.
#pragma once

#include <functional>
#include <string>

// Asks for `address` to be opened. `completion`, which may be null, hears whether it was taken.
void openAddress(const std::string& address, std::function<void(bool)> completion = {});

// From now on addresses go to the opener outside the device, if the launcher has given one, and those that
// nothing opens are shown. Needs the application object; call it once, before any command is started.
void openAddressesOnHost();

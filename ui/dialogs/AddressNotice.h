// An address that no program of the host opens, for the user to take along.
#pragma once

#include <QString>

// Shows the address as text that can be selected and copied; all of it is selected to start with.
void showAddress(const QString& address);

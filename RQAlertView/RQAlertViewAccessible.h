// A dialog as assistive technology sees it.
#pragma once

// From now on the box of every dialog is exposed as an alert or a dialog by its title, and the list of
// buttons as a list whose items can be pressed. Once is enough, more does no harm.
void installRQAlertViewAccessibility();

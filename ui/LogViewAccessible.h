// The build log as assistive technology reads it.
#pragma once

// Makes every LogView made from now on a read-only text for assistive technology. Safe to repeat.
void installLogViewAccessibility();

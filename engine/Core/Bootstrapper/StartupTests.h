// Start-up's built-in unit test step: the unit test manager with its five drivers. In the shipped
// configuration the manager passes at once without running a driver; `runDrivers` (the
// --run-unit-tests option) really runs them. Any failure stops the program before a system is
// synchronized. Main thread only, called once.
#pragma once

namespace grindle {

void RunStartupUnitTests(bool runDrivers);

}  // namespace grindle

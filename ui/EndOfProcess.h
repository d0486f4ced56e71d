// What happens to a running build when the window is closed.
#pragma once

// From now on the end of the application first ends the commands that are running and waits for the jobs that
// ran them, so that nothing goes on behind a closed window. Needs the application object; call it once.
void endCommandsWithApplication();

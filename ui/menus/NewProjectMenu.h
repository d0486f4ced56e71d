// The project sheet: making a project, adding a header, renaming a file, importing a patch.
#pragma once

class ViewController;

void showNewProjectMenu(ViewController& screen);

// The sheet in which the current project is chosen.
#pragma once

class ViewController;

void showProjectChooser(ViewController& screen);

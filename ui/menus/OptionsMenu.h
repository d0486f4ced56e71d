// The options of the current project, and the interface's language.
#pragma once

class ViewController;

void showOptionsMenu(ViewController& screen);

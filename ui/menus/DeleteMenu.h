// The delete menus: one file, the whole project, any project, every project.
#pragma once

class ViewController;

void showDeleteMenu(ViewController& screen);

// The sheet in which a Flex patch is picked for import.
#pragma once

class ViewController;

void showFlexMenu(ViewController& screen);

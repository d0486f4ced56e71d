// What a start says where there is no Theos.
#pragma once

void showMissingTheos();

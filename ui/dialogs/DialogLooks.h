// The colours that the application's dialogs wear.
#pragma once

class RQAlertView;

// A menu: dark ground, red cancel button.
void dressAsMenu(RQAlertView& dialog);

// A message or a question: a menu's colours with white texts.
void dressAsMessage(RQAlertView& dialog);

// A one-line prompt.
void dressAsPrompt(RQAlertView& dialog);

// What is shown while something is under way.
void dressAsProgress(RQAlertView& dialog);

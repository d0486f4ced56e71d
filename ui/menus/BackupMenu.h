// Backing up, restoring, and deleting the backups.
#pragma once

class ViewController;

void backUpListedProject();
void showBackups(ViewController& screen);
void confirmDeletingBackups();

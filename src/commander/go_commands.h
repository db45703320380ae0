#pragma once

#include "panels/model/panel.h"

void goToRoot();            // inside an archive: to the directory that holds it
void goToOtherDirectory();  // the active panel to the other one's directory
void goToPreviousPath();
void goHome();
void goToShortcut(int digit);
void storeShortcut(int digit);
// Opens the entry under the cursor: enters a directory, opens a file.
void enterCurrent(Panel& panel);
// Enters the entry under the cursor as a directory or as an archive, whatever else it may be.
void enterAsDirectory(Panel& panel);
void goUp(Panel& panel);
// Whether the option that turns Ctrl-R into a drive change counts.
enum class DriveChange { Never, Allowed };
void reRead(Panel& panel, DriveChange driveChange);

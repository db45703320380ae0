#pragma once

#include "fileops/operation_ui.h"

// Whether a directory that isn't empty may go with everything in it: a box with buttons, or, unless
// that confirmation is turned off, a field in which the word YES has to be typed. Application
// thread.
TreeAnswer askTreeQuestion(const Westring& path);

#pragma once

#include <string>
#include <vector>

#include "ui/win.h"

// The note that a directory may hold: a text file for whoever looks at the directory.
inline constexpr wchar_t NoteFileName[] = L"dirinfo";

// Draws the note of a directory from `row` on: its title in that row, its lines in the next ones,
// down to the last row of the window. Nothing when there is no note.
void DirectoryInfo(Win& window, const Westring& directory, int row);

// The first lines of a note, tabs expanded, cut to `width` cells.
std::vector<Westring> noteLines(const std::string& content, int width, int mostLines);

#pragma once

#include "foundation/string_collections.h"
#include "history/history_lines.h"

// Which history a string field keeps.
enum class FieldHistory : int {
  CompareMask = 1,
  FindFiles = 2,
  FindText = 3,
  GroupSelect = 4,
  SearchText = 5,
  Replacement = 6,
  Filter = 7,
  Archive = 9,
  Destination = 10,
  ViewFile = 11,
  None = 13,
  // Make directory and delete by name name the class that keeps nothing.
};

inline constexpr int DirectoryHistoryLimit = 100;

// The histories of this run; the most recent element is last. What is added goes into the file of
// the histories too, once there is one; what can't be written is only remembered. Application
// thread.
FnStringStore* fieldHistory(FieldHistory which);  // null for a class that keeps nothing
// Any string equal without regard to case goes, then the text is appended.
void addField(FieldHistory which, const Westring& text);

FnStringStore& commandHistory();
// Leading white space is dropped; an equal string (exactly) goes; appended. Empty text is not kept.
void addCommand(const Westring& text);

FnStringStore& directoryHistory();
void addDirectory(const Westring& path);
// Going up: the newest entry goes if it is the directory just left.
void removeNewestDirectory(const Westring& left);

// The file from now on; "" for none.
void keepHistoryIn(const Westring& path);
// Takes what the file holds. One with more than `mostCommands` lines of commands is written anew
// with the newest of them and the newest entries of each field.
void loadHistory(int mostCommands);

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "foundation/westring.h"

// The lines of the history file, as bytes: a command, or the number of a field's history, the byte
// 0x19 and an entry.

inline constexpr int FieldHistoryCount = 12;
inline constexpr size_t LongestHistoryText = 4095;  // bytes of a line

// Without an end. "" for a text that would not come back as it is: an empty one, one with control
// characters, one that is too long.
std::string historyLineOfCommand(const Westring& command);
std::string historyLineOfField(int number, const Westring& text);

// What a history file holds, each text once, at the place of its last line; the newest is last. The
// texts are views of the file's content.
struct HistoryContent {
  std::vector<std::string_view> commands;
  std::vector<std::string_view> fields[FieldHistoryCount];
  size_t commandLines = 0;  // with those that came again
};

// Takes any bytes. Commands are told apart exactly, entries of fields without regard to case. Of
// the commands only the newest `mostCommands` stay.
HistoryContent readHistoryLines(std::string_view content, size_t mostCommands);
// A file of just this, for each field at most its newest KeptFieldEntries.
inline constexpr size_t KeptFieldEntries = 20;
std::string historyText(const HistoryContent& content);

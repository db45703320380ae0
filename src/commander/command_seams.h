#pragma once

#include <functional>

#include "panels/model/panel_pair.h"

enum class FindStart { Anew, WithLastResult };

// What the main loop calls of modules that stand beside it. A module connects itself by filling its
// place; an empty place makes the key and the menu item do nothing. Application thread.
struct CommandSeams {
  std::function<void(int side, FindStart start)> fileFind;
  std::function<void()> compareDirectories;
};

CommandSeams& commandSeams();

// Calls a seam that may be empty.
template <class... Parameters, class... Arguments>
void callSeam(const std::function<void(Parameters...)>& seam, Arguments&&... arguments) {
  if (seam) seam(std::forward<Arguments>(arguments)...);
}

// What a row of the command table runs while a module isn't connected yet.
inline auto seam(std::function<void()> CommandSeams::*place) {
  return [place] { callSeam(commandSeams().*place); };
}

#pragma once

#include <functional>

#include "panels/model/panel_pair.h"

enum class FindStart { Anew, WithLastResult };

// What the main loop calls of modules that stand beside it. A module connects itself by filling its
// place; an empty place makes the key and the menu item do nothing. Application thread.
struct CommandSeams {
  std::function<void()> configurationDialog;
  std::function<void()> coloursDialog;
  std::function<void()> confirmationsDialog;
  std::function<void(int side, FindStart start)> fileFind;
  std::function<void()> compareDirectories;
  std::function<void(Panel&)> fileAttributes;
  std::function<void(Panel&)> fileCase;
  std::function<void(Panel&)> fileDateTime;
  std::function<void(Panel&)> makeSymbolicLink;
  std::function<void(Panel&)> makeObjects;
};

CommandSeams& commandSeams();

// Calls a seam that may be empty.
template <class... Parameters, class... Arguments>
void callSeam(const std::function<void(Parameters...)>& seam, Arguments&&... arguments) {
  if (seam) seam(std::forward<Arguments>(arguments)...);
}

// What a row of the command table runs while a module isn't connected yet; those that take a panel
// get the active one.
inline auto seam(std::function<void()> CommandSeams::*place) {
  return [place] { callSeam(commandSeams().*place); };
}
inline auto seam(std::function<void(Panel&)> CommandSeams::*place) {
  return [place] { callSeam(commandSeams().*place, panelPair().active()); };
}

#pragma once

#include <functional>

#include "foundation/string_collections.h"

// The window of the commands that were run.

enum class HistoryOutcome {
  Nothing,    // there are none, or the window was left
  PutOnLine,  // the chosen command is to be edited first
  Run         // the chosen command was run
};

// `command` is the chosen one with PutOnLine, which is also the outcome where it couldn't be run.
// `help` is what F1 calls. Application thread.
HistoryOutcome commandHistoryWindow(Westring& command, const std::function<void()>& help);

// The first text that holds `part`, from the index `from` on in steps of `step` (1 or -1); -1 when
// there is none.
int findInHistory(const FnStringStore& texts, const Westring& part, int from, int step);

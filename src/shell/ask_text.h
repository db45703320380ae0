#pragma once

#include <optional>

#include "foundation/westring.h"

// A small dialog in the middle of the screen that asks for one line of text. Nothing when it was
// cancelled. The cursor and the text attribute are as before afterwards. Application thread.
std::optional<Westring> askText(const Westring& title);

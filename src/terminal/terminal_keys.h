#pragma once

#include <string>

#include "console/key_codes.h"
#include "foundation/westring.h"

// What a key sends to the terminal of a command: text as UTF-8, named keys as the sequences that
// the terminal type "ansi" and its relatives know. "" for a key that sends nothing.
std::string keyBytes(Key::Code code);

// Text from the clipboard as if it were typed: each line end is the Enter key's CR.
std::string pastedBytes(const Westring& text);

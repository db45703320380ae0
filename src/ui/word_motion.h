#pragma once

#include "foundation/westring.h"

// Steps by words, shared by the input fields and the command line. Positions are character indices
// from 0 to the text's length; one beyond the text counts as its end.

// A letter or digit of the locale, or '_'. Raw bytes of undecodable names are no word characters.
bool isWordCharacter(wchar_t character);

enum class WordRightStop {
  NextStart,  // at the start of the next word
  WordEnd     // behind the next word's last character
};

// The choice that the user's BriefWordRight stands for.
WordRightStop configuredWordRightStop();

int wordLeft(const Westring& text, int from);  // the start of the word before `from`
int wordRight(const Westring& text, int from, WordRightStop stop);

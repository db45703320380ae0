#pragma once

#include "foundation/string_collections.h"

void clipboardSetText(const Westring& text);
void clipboardSetText(const char* text);             // in the console's code page
Westring clipboardGetText();                         // empty when there is none
void clipboardSetLines(const FnStringStore& lines);  // a newline between them
void clipboardGetLines(FnStringStore& lines);

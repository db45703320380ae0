#pragma once

#include <cstdint>

#include "editor/text/text_encoding.h"

class CTextEditor;

// Where an edit begins: at a byte of the file, or -1 for where it was left; that many characters
// from there on are marked.
struct EditStart {
  int64_t offset = -1;
  int64_t selection = 0;
};

// Reads the file of that name, which may have to be made first. False when there is nothing to
// edit: the user was told why, or wanted it so.
bool loadFile(CTextEditor& editor, const EditStart& start);
// Reads the file again as a text in this encoding; everything that wasn't saved is lost. False when
// that failed and the text is as it was; the user was told.
bool reloadFile(CTextEditor& editor, const TextEncoding& encoding);
// Tells of lines that aren't what the encoding says.
void warnOfInvalidLines(const CTextEditor& editor);

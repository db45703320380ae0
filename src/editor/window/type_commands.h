#pragma once

class CTextEditor;

// A typed character: in the place of the block, and in OverStrike of the character under the
// cursor. Nothing when the line has no room for it.
void insertCharacter(CTextEditor& editor, wchar_t character);
// The same with any character: those that end lines split the line with that very end, and a NUL,
// which would end one, is ignored.
void insertQuoted(CTextEditor& editor, wchar_t character);

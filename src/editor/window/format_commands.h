#pragma once

class CTextEditor;
struct TextEncoding;

// The bytes of a text in a code page are read in another one; what was changed is kept.
void recodeText(CTextEditor& editor, int page);
// The text stays as it is and is saved in another encoding.
void setSavedEncoding(CTextEditor& editor, const TextEncoding& encoding);
// Whether the file is saved with a byte order mark; a format without one has none.
void setMark(CTextEditor& editor, bool hasMark);

#pragma once

class CTextEditor;

// The journal of the edit begins anew: the text is as its file.
void beginJournal(CTextEditor& editor);
// Asks about what earlier edits of the file have left, and makes their changes again where that is
// wanted. False when the file isn't to be edited.
bool recoverChanges(CTextEditor& editor);

#pragma once

#include "editor/text/file_status_store.h"

class CTextEditor;

// What is remembered of a file between two edits of it in one run.

// The record of the file of this edit; null when there is none.
HISTREC* findRecord(const CTextEditor& editor);
// The place where the last edit was left, as far as the text still has it.
void takeView(CTextEditor& editor, const HISTREC& record);
// The bookmarks, and the steps that can be taken back if they were made in the encoding that the
// text has now.
void takeSteps(CTextEditor& editor, const HISTREC& record);
// What the next edit of the file begins with. The text is as the file.
void storeRecord(const CTextEditor& editor);

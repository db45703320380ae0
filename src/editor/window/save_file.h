#pragma once

#include "editor/text/text_encoding.h"
#include "foundation/file_stamp.h"
#include "foundation/westring.h"

class CTextEditor;

// Saves the text to its file, in this form; asks what has to be asked and tells what went wrong.
// True when the file holds the text: then nothing is modified any more, the text has this form, and
// what the next edit begins with is remembered.
bool saveFile(CTextEditor& editor);
bool saveFile(CTextEditor& editor, const TextForm& form);
// To another file, which is what `seen` says (lookAtFile). Then it is the file of the edit.
bool saveFileAs(CTextEditor& editor, const Westring& path, const FileStamp& seen,
                const TextForm& form);

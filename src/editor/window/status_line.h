#pragma once

#include "editor/window/text_editor.h"

// The text of the first row, as long as it comes: the screen's edge cuts it.
Westring editorStatus(const CTextEditor& editor);

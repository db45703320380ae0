#pragma once

class CTextEditor;

// Marks the word at the cursor, or else the one that ends there, and goes to its start. Without a
// word nothing is marked.
void selectWord(CTextEditor& editor);

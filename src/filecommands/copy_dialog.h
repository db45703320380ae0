#pragma once

#include <functional>

#include "fileops/operation.h"

enum class Toggle { Off, On };

// What the dialog for a destination shows.
struct CopyDialogTexts {
  const char* title = "";  // in the frame
  Westring line;           // above the field
};

CopyDialogTexts copyDialogTexts(TransferKind kind, const Westring& name);  // one entry
CopyDialogTexts copyDialogTexts(TransferKind kind, int count);             // tagged ones

// Takes the directory off the text, or puts `directory` in front of a bare name.
Westring toggledDirectory(const Westring& text, const Westring& directory);

// Asks for the destination, starting with `text`. False on Esc. With `toggle` on, three keys switch
// between the bare name and a name in `otherDirectory`. The dialog stays while `accepts`, if there
// is one, refuses the text. Application thread.
bool runCopyDialog(const CopyDialogTexts& texts, Westring& text, const Westring& otherDirectory,
                   Toggle toggle,
                   const std::function<bool(const Westring& text)>& accepts = nullptr);

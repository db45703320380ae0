#pragma once

#include <optional>

#include "foundation/westring.h"

// Follows a shell command while it is put together, and quotes each file name for the place where
// it goes: bare, or between quotes that the user typed. Whatever the name holds, the shell reads it
// as part of one word.
class ShellContext {
 public:
  void typed(wchar_t ch);  // a character of the user's own text, passed on as it is
  // The name as it goes into the command. Nothing when no form is safe: a newline inside a command
  // substitution, a here-document or a comment, a double quote inside backticks; then the command
  // must not run.
  std::optional<Westring> quote(const Westring& name);

 private:
  enum class Quotes { None, Single, Double };

  void typedBare(wchar_t ch);
  void typedInDoubleQuotes(wchar_t ch);
  void noteNesting(wchar_t ch);

  Quotes quotes_ = Quotes::None;
  bool escaped_ = false;    // the last character typed was a quoting backslash
  bool nested_ = false;     // met a form whose inside this class doesn't follow
  bool backticks_ = false;  // inside an open pair of them
  bool wordStart_ = true;   // what comes next begins a word
  wchar_t previous_ = 0;    // last character typed; 0 behind a name or a quoted character
};

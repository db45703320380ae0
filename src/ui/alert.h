#pragma once

#include "foundation/westring.h"

enum class AlertButtons : int {
  Ok = 0,
  OkCancel = 1,
  OverwriteOne = 2,  // OK, Cancel, Skip, All, None
  RetrySkip = 3,     // Retry, Skip, Cancel
  OverwriteMany = 4  // OK, Cancel, Skip, All, None, All Older
};
enum class AlertColour { Message, Error };

// What a button answers.
namespace Answer {
inline constexpr int Yes = 'y';
inline constexpr int Cancel = 27;
inline constexpr int Skip = 's';
inline constexpr int All = 'a';
inline constexpr int None = 'e';
inline constexpr int Retry = 'r';
inline constexpr int AllOlder = 'd';
}  // namespace Answer

// The message box: `text` wrapped at spaces into at most 10 lines, `caption` (a path, or empty)
// shortened below it, one row of buttons. Returns an Answer. Enter is the first button, Esc always
// Answer::Cancel. Application thread.
int alert(const Westring& text, const Westring& caption, AlertButtons buttons = AlertButtons::Ok,
          AlertColour colour = AlertColour::Message);
// The same with text in UTF-8.
int alert(const char* text, const Westring& caption, AlertButtons buttons = AlertButtons::Ok,
          AlertColour colour = AlertColour::Message);

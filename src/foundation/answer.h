#pragma once

// What a question offers, how it looks, and what it answers: shared by those who ask and those who
// put the question on a screen.

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
inline constexpr int ProgramEnds = 0;  // no answer: whoever asked stops and asks nothing more
}  // namespace Answer

#include "shell/ask_text.h"

#include <algorithm>

#include "console/console.h"
#include "console/key_codes.h"
#include "console/text_state.h"
#include "options/colours.h"
#include "ui/dialog.h"

namespace {
constexpr int LeastWidth = 20;
constexpr int WidthAround = 4;  // frame and one blank on each side
constexpr int Height = 5;
constexpr int CentreVertically = -2;
constexpr int CentreHorizontally = -1;
constexpr int ScreenMargin = 8;  // the title stays this much narrower than the screen
constexpr int MaxAnswerLength = 512;
constexpr int Column = 1;
constexpr int TitleRow = 0;
constexpr int FieldRow = 2;
}  // namespace

std::optional<Westring> askText(const Westring& title) {
  TextStateGuard guard;
  const Westring shown = left(title, console->columns() - ScreenMargin);
  const int width = std::max(shown.length(), LeastWidth);
  const unsigned char colour = colourOf(Colour::Messages);
  Westring answer;
  Dialog dialog(CentreHorizontally, CentreVertically, width + WidthAround, Height, colour);
  dialog.addText(Column, TitleRow, shown);
  dialog.addString(Column, FieldRow, Group::New, &answer, width, MaxAnswerLength);
  dialog.addExitKey(Key::F10);  // the window's close button
  if (dialog.run() != Key::Enter) return std::nullopt;
  return answer;
}

#include "ui/alert.h"

#include <algorithm>

#include "foundation/text_format.h"
#include "options/colours.h"
#include "ui/alert_dialog.h"

namespace {

constexpr int MostLines = 10;
constexpr int ScreenMargin = 8;  // columns that a line leaves free on the screen
constexpr int FrameAndMargin = 4;
constexpr int RowsBesidesText = 4;  // frame, caption and buttons
constexpr int UpperThird = -3;

// The hot characters stand at their button's position; "Cancel" has none.
struct ButtonSet {
  std::vector<ButtonSpec> buttons;
  std::vector<char> hotKeys;
  int rowWidth;
};

const ButtonSet& buttonSet(AlertButtons which) {
  const auto button = [](int answer, const char* text) {
    return ButtonSpec{Key::Code(answer), text};
  };
  static const ButtonSpec ok = button(Answer::Yes, "OK"), cancel = button(Answer::Cancel, "Cancel"),
                          skip = button(Answer::Skip, "Skip"), all = button(Answer::All, "All"),
                          none = button(Answer::None, "None"),
                          retry = button(Answer::Retry, "Retry"),
                          allOlder = button(Answer::AllOlder, "All Older");
  static const ButtonSet sets[] = {
      {{ok}, {'o'}, 8},
      {{ok, cancel}, {'o'}, 20},
      {{ok, cancel, skip, all, none}, {'o', 0, 's', 'a', 'e'}, 50},
      {{retry, skip, cancel}, {'r', 's'}, 33},
      {{ok, cancel, skip, all, none, allOlder}, {'o', 0, 's', 'a', 'e', 'd'}, 61},
  };
  return sets[static_cast<int>(which)];
}

int answerOf(Key::Code exitCode) {
  if (exitCode == Key::Enter) return Answer::Yes;
  if (exitCode == Dialog::ProgramEnds) return Answer::ProgramEnds;
  return exitCode.value();
}

}  // namespace

std::vector<Westring> wrapAlertText(const Westring& text, int screenWidth) {
  const int longest = std::max(screenWidth - ScreenMargin, 1);
  std::vector<Westring> lines;
  Westring rest = text;
  while (static_cast<int>(lines.size()) < MostLines) {
    if (rest.length() <= longest) {
      lines.push_back(rest);
      break;
    }
    const int space = left(rest, longest + 1).rfind(L' ');
    lines.push_back(left(rest, space > 0 ? space : longest));
    rest = Westring(rest.data() + (space > 0 ? space + 1 : longest));
  }
  return lines;
}

AlertDialog::AlertDialog(const AlertLayout& layout, AlertButtons buttons, AlertColour colour)
    : Dialog(-1, UpperThird, layout.width + FrameAndMargin, layout.height(),
             colourOf(colour == AlertColour::Error ? Colour::Errors : Colour::Messages)) {
  BatchScope batch;
  int row = 0;
  for (const Westring& line : layout.lines) putCentred(row++, line.data());
  putCentred(row++, layout.caption.data());
  const ButtonSet& set = buttonSet(buttons);
  setHotChars(set.hotKeys.data(), static_cast<int>(set.hotKeys.size()));
  addButtons(-1, row, Group::New, set.buttons);
}

AlertLayout::AlertLayout(const Westring& text, const Westring& path, AlertButtons buttons,
                         int screenWidth)
    : lines(wrapAlertText(text, screenWidth)),
      caption(shortenPath(path, screenWidth - ScreenMargin)) {
  width = std::max(buttonSet(buttons).rowWidth, caption.length());
  for (const Westring& line : lines) width = std::max(width, line.length());
  width += width & 1;
}

int AlertLayout::height() const {
  return static_cast<int>(lines.size()) + RowsBesidesText;
}

int alert(const Westring& text, const Westring& caption, AlertButtons buttons, AlertColour colour) {
  AlertDialog dialog(AlertLayout(text, caption, buttons, console->columns()), buttons, colour);
  return answerOf(dialog.run());
}

int alert(const char* text, const Westring& caption, AlertButtons buttons, AlertColour colour) {
  return alert(Westring(text), caption, buttons, colour);
}

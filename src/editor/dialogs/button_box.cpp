#include "editor/dialogs/button_box.h"

#include <algorithm>

#include "foundation/text_format.h"
#include "options/colours.h"
#include "ui/alert_dialog.h"
#include "ui/push_button.h"

namespace {

constexpr int UpperThird = -3;
constexpr int ScreenMargin = 8;  // columns that a line leaves free on the screen
constexpr int FrameAndMargin = 4;
constexpr int ButtonGap = 2;
constexpr int RowsBesidesText = 4;  // frame, caption and buttons
constexpr int RowsWithoutText = 5;

using TDEditor::BoxButton;
using TDEditor::BoxTexts;

std::vector<Westring> linesOf(const BoxTexts& texts) {
  if (texts.text.empty()) return {};
  return wrapAlertText(texts.text, console->columns());
}

int widthOf(const std::vector<BoxButton>& buttons, const std::vector<Westring>& lines,
            const Westring& caption) {
  int width = -ButtonGap;
  for (const BoxButton& button : buttons) width += PushButton::widthOf(button.text) + ButtonGap;
  width = std::max(width, caption.length());
  for (const Westring& line : lines) width = std::max(width, line.length());
  return width + (width & 1) + FrameAndMargin;
}

int heightOf(const std::vector<Westring>& lines) {
  return lines.empty() ? RowsWithoutText : static_cast<int>(lines.size()) + RowsBesidesText;
}

}  // namespace

namespace TDEditor {

CButtonBox::CButtonBox(const BoxTexts& texts, const std::vector<BoxButton>& buttons)
    : CButtonBox(texts, buttons, linesOf(texts),
                 shortenPath(texts.caption, console->columns() - ScreenMargin)) {}

CButtonBox::CButtonBox(const BoxTexts& texts, const std::vector<BoxButton>& buttons,
                       const std::vector<Westring>& lines, const Westring& caption)
    : Dialog(-1, UpperThird, widthOf(buttons, lines, caption), heightOf(lines),
             colourOf(Colour::Messages)) {
  BatchScope batch;
  if (*texts.title != 0) putFrameTitle(texts.title);
  int row = 0;
  for (const Westring& line : lines) putCentred(row++, line.data());
  putCentred(row++, caption.data());
  std::vector<ButtonSpec> specs;
  std::vector<char> hotKeys;
  for (const BoxButton& button : buttons) {
    specs.push_back({button.exitCode, button.text});
    hotKeys.push_back(button.hot);
  }
  setHotChars(hotKeys.data(), static_cast<int>(hotKeys.size()));
  addButtons(-1, row, Group::New, specs);
}

Key::Code askBox(const BoxTexts& texts, const std::vector<BoxButton>& buttons) {
  return CButtonBox(texts, buttons).run();
}

}  // namespace TDEditor

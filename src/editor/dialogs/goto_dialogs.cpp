#include "editor/dialogs/goto_dialogs.h"

#include <algorithm>
#include <climits>
#include <string>

#include "options/colours.h"
#include "ui/dialog.h"

namespace {

constexpr int UpperThird = -3;
constexpr int LineColumns = 32, OffsetColumns = 36, Rows = 7;
constexpr int LabelColumn = 1, LineField = 17, OffsetField = 20;
constexpr int FieldRow = 1, RangeRow = 2, ButtonRow = 4;
constexpr int FewDigits = 6, ManyDigits = 10, ViewerDigits = 8;
constexpr int64_t MostOfFewDigits = 999'999;
constexpr int OffsetWidth = 12, OffsetDigits = 16;
constexpr int HexBase = 16;

int clampToField(int64_t line) {
  return static_cast<int>(std::clamp<int64_t>(line, 1, INT_MAX));
}

// The value of a hexadecimal digit, or -1.
int hexDigit(wchar_t character) {
  if (character >= L'0' && character <= L'9') return character - L'0';
  if (character >= L'a' && character <= L'f') return character - L'a' + 10;
  if (character >= L'A' && character <= L'F') return character - L'A' + 10;
  return -1;
}

class CGotoLineDlg : public Dialog {
 public:
  CGotoLineDlg(int* line, int digits)
      : Dialog(-1, UpperThird, LineColumns, Rows, colourOf(Colour::Messages)) {
    putFrameTitle(" Goto Line ");
    addInteger(LineField, FieldRow, Group::New, line, digits, KeepFormat::No);
    addOkCancel(-1, ButtonRow, Group::New);
    addText(LabelColumn, FieldRow, "Line to go to:");
  }

  void showRange(int64_t lineCount) {
    addText(LineField, RangeRow, ("1-" + std::to_string(lineCount)).c_str());
  }
};

// Asks until the number is in the range.
std::optional<int64_t> askWithin(Dialog& dialog, const int& line, int64_t lineCount) {
  for (;;) {
    const Key::Code key = dialog.run();
    if (key == Key::Esc || key == Dialog::ProgramEnds) return std::nullopt;
    if (line >= 1 && line <= lineCount) return line;
    dialog.askAgain(0);
  }
}

}  // namespace

namespace TDEditor {

std::optional<int64_t> askLine(int64_t line, int64_t lineCount) {
  int value = clampToField(line);
  CGotoLineDlg dialog(&value, lineCount > MostOfFewDigits ? ManyDigits : FewDigits);
  dialog.showRange(lineCount);
  return askWithin(dialog, value, lineCount);
}

std::optional<int64_t> askLine() {
  int value = 1;
  CGotoLineDlg dialog(&value, ViewerDigits);
  return askWithin(dialog, value, INT_MAX);
}

int64_t parseOffset(const wchar_t* text) {
  int64_t value = 0;
  for (; hexDigit(*text) >= 0; ++text) {
    if (value > INT64_MAX / HexBase) return INT64_MAX;
    value = value * HexBase + hexDigit(*text);
  }
  return value;
}

std::optional<int64_t> askOffset() {
  Westring text;
  Dialog dialog(-1, UpperThird, OffsetColumns, Rows, colourOf(Colour::Messages));
  dialog.putFrameTitle(" Goto Offset ");
  dialog.addString(OffsetField, FieldRow, Group::New, &text, OffsetWidth, OffsetDigits);
  dialog.addOkCancel(-1, ButtonRow, Group::New);
  dialog.addText(LabelColumn, FieldRow, "Offset to go to: 0x");
  const Key::Code key = dialog.run();
  if (key == Key::Esc || key == Dialog::ProgramEnds) return std::nullopt;
  return parseOffset(text.data());
}

}  // namespace TDEditor

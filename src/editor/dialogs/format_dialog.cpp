#include "editor/dialogs/format_dialog.h"

#include "options/colours.h"
#include "ui/alert.h"

namespace {

constexpr int UpperThird = -3;
constexpr int Columns = 60, Rows = 9;
constexpr int LabelColumn = 1, RadioColumn = 14, RightColumn = 34, PageColumn = 45;
constexpr int PageDigits = 5;
constexpr char HotChars[] = "c863pben";

// The radio buttons, and the elements at the same indices.
enum Radio : int { CodePageRadio, Utf8Radio, Utf16Radio, Utf32Radio };
constexpr int PageElement = 4, MarkElement = 5;

Radio radioOf(TextFormat format) {
  switch (format) {
    case TextFormat::Utf32Le:
    case TextFormat::Utf32Be:
      return Utf32Radio;
    case TextFormat::Utf16Le:
    case TextFormat::Utf16Be:
      return Utf16Radio;
    case TextFormat::CodePage:
      return CodePageRadio;
    case TextFormat::Utf8:
    case TextFormat::Undetermined:
      return Utf8Radio;
  }
  return Utf8Radio;
}

bool isWide(int radio) {
  return radio == Utf16Radio || radio == Utf32Radio;
}

}  // namespace

namespace TDEditor {

CFormatSelectDlg::CFormatSelectDlg(const char* title, const TextForm& form, int rowsAbove)
    : Dialog(-1, UpperThird, Columns, Rows + rowsAbove, colourOf(Colour::Messages)),
      firstRow_(1 + rowsAbove),
      openedWith_(radioOf(form.encoding.format)),
      openingMark_(form.hasMark),
      radio_(openedWith_),
      lastRadio_(openedWith_),
      page_(resolvedPage(form.encoding.page)),
      mark_(form.hasMark),
      bigEndian_(isBigEndian(form.encoding.format)) {
  BatchScope batch;
  putFrameTitle(title);
  setHotChars(HotChars, sizeof HotChars - 1);
  const char* const labels[] = {"Code Page", "UTF-8", "UTF-16", "UTF-32"};
  for (int i = CodePageRadio; i <= Utf32Radio; ++i) {
    addRadio(RadioColumn, firstRow_ + i, i == CodePageRadio ? Group::New : Group::Same, &radio_, i,
             labels[i]);
  }
  addInteger(PageColumn, firstRow_, Group::New, &page_, PageDigits, KeepFormat::No);
  addCheck(RightColumn, firstRow_ + 1, Group::New, &mark_, "Byte Order Mark");
  addCheck(RightColumn, firstRow_ + 2, Group::Same, &bigEndian_, "Big-Endian");
}

void CFormatSelectDlg::addEnd() {
  addOkCancel(-1, -1, Group::New);
  addText(LabelColumn, firstRow_, "File Format:");
  addText(RightColumn, firstRow_, "Code Page:");
}

void CFormatSelectDlg::focusChanged() {
  if (radio_ == lastRadio_) return;
  lastRadio_ = radio_;
  if (radio_ == openedWith_) {
    mark_ = openingMark_;
  } else if (isWide(radio_)) {
    mark_ = true;
  }
  redraw(MarkElement);
}

TextEncoding CFormatSelectDlg::chosenEncoding() const {
  switch (radio_) {
    case Utf32Radio:
      return {bigEndian_ ? TextFormat::Utf32Be : TextFormat::Utf32Le};
    case Utf16Radio:
      return {bigEndian_ ? TextFormat::Utf16Be : TextFormat::Utf16Le};
    case CodePageRadio:
      return {TextFormat::CodePage, page_};
    default:
      return {TextFormat::Utf8};
  }
}

bool CFormatSelectDlg::pageIsThere() {
  if (radio_ != CodePageRadio || codePageExists(page_)) return true;
  alert("Invalid code page", L"", AlertButtons::Ok, AlertColour::Error);
  askAgain(PageElement);
  return false;
}

bool CFormatSelectDlg::ask(TextForm& form) {
  do {
    const Key::Code key = run();
    if (key == Key::Esc || key == ProgramEnds) return false;
  } while (!pageIsThere());
  form = {chosenEncoding(), mark_};
  return true;
}

}  // namespace TDEditor

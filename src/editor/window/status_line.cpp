#include "editor/window/status_line.h"

#include <string>

#include "foundation/text_format.h"
#include "options/options.h"

namespace {

constexpr wchar_t Title[] = L"Edit: ";
constexpr int WidthOfTheRest = 52;  // of the row that the name doesn't get
constexpr int StatusWidth = 100;    // more than two long numbers need

// The number that stands for a character: in a code page that of its bytes there.
unsigned numberOf(wchar_t character, const TextEncoding& encoding) {
  if (isRawByte(character)) return static_cast<unsigned char>(character);
  if (encoding.format != TextFormat::CodePage) return static_cast<unsigned>(character);
  std::string bytes;
  if (encodeText({&character, 1}, encoding, bytes) != AllEncoded) {
    return static_cast<unsigned>(character);
  }
  unsigned number = 0;
  for (const char byte : bytes) number = number << 8U | static_cast<unsigned char>(byte);
  return number;
}

Westring characterText(const CTextEditor& editor) {
  const TextPlace cursor = editor.cursor();
  if (cursor.index >= editor.document.lineLength(cursor.line)) return L"EOL";
  const unsigned number = numberOf(editor.document.characterAt(cursor), editor.document.encoding());
  wchar_t text[StatusWidth];
  std::swprintf(text, StatusWidth, L"%3u x%02X", number, number);
  return text;
}

}  // namespace

Westring editorStatus(const CTextEditor& editor) {
  const int nameWidth = editor.columns() - WidthOfTheRest;
  const long long line = editor.cursor().line + 1;
  const long long column = editor.cursorColumn() + 1;
  const wchar_t flags[] = {editor.document.lineEndStyle() == LineEndStyle::Lf ? L'U' : L' ',
                           GlobalOptions::AutoIndent ? L'I' : L' ', editor.isModified ? L'*' : L' ',
                           editor.quoteNext ? L'"' : L' ', 0};
  wchar_t rest[StatusWidth];
  std::swprintf(rest, StatusWidth, L" %ls Line %-5lld Col %-4lld %-11ls %ls", flags, line, column,
                characterText(editor).data(), formatName(editor.document.encoding()).data());
  return Westring(Title) + padRight(shortenPath(editor.file.name, nameWidth), nameWidth) + rest;
}

#include "terminal/terminal_keys.h"

#include "foundation/utf8.h"

namespace {
struct NamedKey {
  Key::Code code;
  const char* bytes;
};

constexpr NamedKey NamedKeys[] = {
    {Key::Home, "\x1b[H"},        {Key::Up, "\x1b[A"},           {Key::Down, "\x1b[B"},
    {Key::Right, "\x1b[C"},       {Key::Left, "\x1b[D"},         {Key::Backspace, "\b"},
    {Key::Delete, "\x1b[3~"},     {Key::End, "\x1b[F"},          {Key::PageUp, "\x1b[5~"},
    {Key::PageDown, "\x1b[6~"},   {Key::Insert, "\x1b[L"},       {Key::ShiftTab, "\x1b[Z"},
    {Key::F1, "\x1b[11~"},        {Key::F2, "\x1b[12~"},         {Key::F3, "\x1b[13~"},
    {Key::F4, "\x1b[14~"},        {Key::F5, "\x1b[15~"},         {Key::F6, "\x1b[17~"},
    {Key::F7, "\x1b[18~"},        {Key::F8, "\x1b[19~"},         {Key::F9, "\x1b[20~"},
    {Key::F10, "\x1b[21~"},       {Key::F11, "\x1b[23~"},        {Key::F12, "\x1b[24~"},
    {Key::CtrlLeft, "\x1b[1;5D"}, {Key::CtrlRight, "\x1b[1;5C"}, {Key::GrayPlus, "+"},
    {Key::GrayMinus, "-"},        {Key::GrayStar, "*"},          {Key::AltSpace, "\x1b "},
};

std::string utf8Of(wchar_t character) {
  const wchar_t text[] = {character, 0};
  return toUtf8(text).data();
}
}  // namespace

std::string keyBytes(Key::Code code) {
  if (code != Key::NoKey && code.isCharacter()) return utf8Of(code.character());
  for (const NamedKey& key : NamedKeys) {
    if (key.code == code) return key.bytes;
  }
  const Key::Code plain = hotKeyChar(code);
  if (plain == code) return "";
  std::string bytes(1, '\x1b');
  return bytes += utf8Of(plain.character());
}

std::string pastedBytes(const Westring& text) {
  const Estring utf8 = toUtf8(text);
  std::string result;
  for (const char* p = utf8.data(); *p != 0; ++p) {
    if (*p == '\n' && !result.empty() && p[-1] == '\r') continue;
    result += *p == '\n' ? '\r' : *p;
  }
  return result;
}

#include "language/shell_quote.h"

#include <cwchar>
#include <string>

#include "options/options.h"

namespace {
constexpr wchar_t Special[] = L" !$~`[]{}\\'\"<>;&|()*?#\t\r";
constexpr wchar_t SpecialInDoubleQuotes[] = L"$`\"\\";

bool isOneOf(const wchar_t* set, wchar_t ch) {
  return ch != 0 && wcschr(set, ch) != nullptr;
}

// Takes what stands between double quotes, both quotes excluded, and moves the cursor behind them.
void takeDoubleQuoted(const wchar_t*& cursor, std::wstring& result) {
  for (; *cursor != 0 && *cursor != L'"'; ++cursor) {
    if (*cursor == L'\\' && isOneOf(SpecialInDoubleQuotes, cursor[1])) ++cursor;
    result += *cursor;
  }
  if (*cursor != 0) ++cursor;
}

void takeSingleQuoted(const wchar_t*& cursor, std::wstring& result) {
  for (; *cursor != 0 && *cursor != L'\''; ++cursor) result += *cursor;
  if (*cursor != 0) ++cursor;
}
}  // namespace

Westring quoteForShell(const Westring& text) {
  std::wstring result;
  for (const wchar_t* cursor = text.data(); *cursor != 0; ++cursor) {
    if (*cursor == L'\n') {
      result += L"'\n'";
      continue;
    }
    if (isOneOf(Special, *cursor)) result += L'\\';
    result += *cursor;
  }
  return Westring(result.c_str());
}

Westring quoteNameForShell(const Westring& name) {
  Westring quoted = quoteForShell(name);
  return *name.data() == L'-' ? L"./" + quoted : quoted;
}

Westring escapeInDoubleQuotes(const Westring& text) {
  std::wstring result;
  for (const wchar_t* cursor = text.data(); *cursor != 0; ++cursor) {
    if (isOneOf(SpecialInDoubleQuotes, *cursor)) result += L'\\';
    result += *cursor;
  }
  return Westring(result.c_str());
}

wchar_t macroLeadCharacter() {
  wchar_t lead = static_cast<unsigned char>(GlobalOptions::CmdChar);
  return lead == 0 ? DefaultMacroLead : lead;
}

Westring doubleLeadChar(const Westring& text) {
  const wchar_t lead = macroLeadCharacter();
  std::wstring result;
  for (const wchar_t* cursor = text.data(); *cursor != 0; ++cursor) {
    if (*cursor == lead) result += lead;
    result += *cursor;
  }
  return Westring(result.c_str());
}

Westring unquoteShellWord(const Westring& text) {
  std::wstring result;
  const wchar_t* cursor = text.data();
  while (*cursor != 0) {
    const wchar_t ch = *cursor++;
    if (ch == L'"') {
      takeDoubleQuoted(cursor, result);
    } else if (ch == L'\'') {
      takeSingleQuoted(cursor, result);
    } else if (ch == L'\\' && *cursor != 0) {
      result += *cursor++;
    } else {
      result += ch;
    }
  }
  return Westring(result.c_str());
}

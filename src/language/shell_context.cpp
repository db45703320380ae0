#include "language/shell_context.h"

#include <cwchar>
#include <string>

#include "language/shell_quote.h"

namespace {

constexpr wchar_t WordSeparators[] = L" \t\n;&|()<>";

bool isOneOf(const wchar_t* set, wchar_t ch) {
  return ch != 0 && wcschr(set, ch) != nullptr;
}

// '$' leaves the quotes too: between them nothing tells it from the '$' of a variable.
std::wstring forSingleQuotes(const wchar_t* name) {
  std::wstring result;
  for (; *name != 0; ++name) {
    if (*name == L'\'' || *name == L'$') {
      result += L"'\\";
      result += *name;
      result += L'\'';
    } else {
      result += *name;
    }
  }
  return result;
}

// Inside backticks the shell takes one backslash away before it reads the command. What it does to
// a double quote depends on quotes around the backticks, so names with one don't come here.
std::wstring forBackticks(const wchar_t* name) {
  std::wstring result;
  for (; *name != 0; ++name) {
    if (isOneOf(L"$`\\", *name)) {
      result += L"\\\\\\";
      result += *name;
    } else {
      result += quoteForShell(Westring(*name, 1)).data();
    }
  }
  return result;
}

}  // namespace

void ShellContext::typed(wchar_t ch) {
  if (escaped_) {
    escaped_ = false;
    wordStart_ = false;
    previous_ = 0;
    return;
  }
  switch (quotes_) {
    case Quotes::None:
      typedBare(ch);
      break;
    case Quotes::Double:
      typedInDoubleQuotes(ch);
      break;
    case Quotes::Single:
      if (ch == L'\'') {
        quotes_ = Quotes::None;
      } else {
        wordStart_ = false;
      }
      break;
  }
  previous_ = ch;
}

void ShellContext::typedBare(wchar_t ch) {
  noteNesting(ch);
  switch (ch) {
    case L'\\':
      escaped_ = true;
      break;
    case L'"':
      quotes_ = Quotes::Double;
      break;
    case L'\'':
      if (previous_ == L'$') nested_ = true;
      quotes_ = Quotes::Single;
      break;
    case L'#':
      if (wordStart_) nested_ = true;
      wordStart_ = false;
      break;
    case L'<':
      if (previous_ == L'<') nested_ = true;
      wordStart_ = true;
      break;
    default:
      wordStart_ = isOneOf(WordSeparators, ch);
      break;
  }
}

void ShellContext::typedInDoubleQuotes(wchar_t ch) {
  noteNesting(ch);
  if (ch == L'\\') {
    escaped_ = true;
  } else if (ch == L'"') {
    quotes_ = Quotes::None;
  } else {
    wordStart_ = false;
  }
}

void ShellContext::noteNesting(wchar_t ch) {
  if (ch == L'`') {
    nested_ = true;
    backticks_ = !backticks_;
  }
  if (previous_ == L'$' && (ch == L'(' || ch == L'{')) nested_ = true;
}

std::optional<Westring> ShellContext::quote(const Westring& name) {
  if (name.empty()) return Westring();
  const Westring plain = wordStart_ && *name.data() == L'-' ? L"./" + name : name;
  std::wstring text;
  if (nested_) {
    if (escaped_ || plain.find(L'\n') >= 0) return std::nullopt;
    if (backticks_ && plain.find(L'"') >= 0) return std::nullopt;
    text = backticks_ ? forBackticks(plain.data()) : quoteForShell(plain).data();
  } else if (quotes_ == Quotes::Single) {
    text = forSingleQuotes(plain.data());
  } else if (quotes_ == Quotes::Double) {
    text = escapeInDoubleQuotes(plain).data();
    // Ends the word of a '$', so that "$" and a name such as "(x)" don't join.
    if (previous_ == L'$') text.insert(0, L"\"\"");
  } else {
    text = quoteForShell(plain).data();
  }
  if (escaped_) {
    // The typed backslash quotes the first character in place of our own.
    if (text[0] == L'\'') return std::nullopt;
    if (text[0] == L'\\') text.erase(0, 1);
  }
  escaped_ = false;
  wordStart_ = false;
  previous_ = 0;
  return Westring(text.c_str());
}

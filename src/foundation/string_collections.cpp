#include "foundation/string_collections.h"

#include <cctype>
#include <cstring>
#include <cwchar>
#include <memory>
#include <string>

#include "foundation/fold.h"
#include "foundation/string_pieces.h"

namespace {
template <class Collection, class Text>
int insertCopy(Collection& collection, const Text& text) {
  auto copy = std::make_unique<Text>(text);
  if (collection.insert(copy.get()) != 0) return 0;
  static_cast<void>(copy.release());  // the collection owns it now
  return 1;
}

// The character that a backslash at `cursor` stands for; moves behind all of it.
char readEscape(const char*& cursor) {
  constexpr int MostDigits = 3;
  ++cursor;
  if (!isdigit(static_cast<unsigned char>(*cursor))) return *cursor != 0 ? *cursor++ : '\0';
  int value = 0;
  for (int i = 0; i < MostDigits && isdigit(static_cast<unsigned char>(*cursor)); ++i) {
    value = value * 10 + (*cursor++ - '0');
  }
  return static_cast<char>(value);
}
}  // namespace

Westring joinLines(const FnStringStore& lines) {
  long long length = 0;
  for (long i = 0; i < lines.count(); ++i) length += lines.peek(i)->length() + 1LL;
  Westring text = Westring::withRoom(checkedCapacity(length));
  wchar_t* out = text.data();
  for (long i = 0; i < lines.count(); ++i) {
    if (i > 0) *out++ = L'\n';
    out = wcpcpy(out, lines.peek(i)->data());
  }
  return text;
}

void splitLines(const Westring& text, FnStringStore& lines) {
  const wchar_t* start = text.data();
  for (;;) {
    const wchar_t* end = start;
    while (*end != 0 && *end != L'\n') ++end;
    const int length = static_cast<int>(end - start);
    lines.add(std::make_unique<Westring>(StringPieces::copyOf<Westring>(start, length)).release());
    if (*end == 0) return;
    start = end + 1;
  }
}

int StringCollection::addCopy(const Estring& text) {
  return insertCopy(*this, text);
}

int StringCollection::addList(const char* list) {
  int added = 0;
  while (*list != 0) added += addCopy(nextField(list));
  return added;
}

Estring StringCollection::join() const {
  long long length = 0;
  for (long i = 0; i < count(); ++i) length += peek(i)->length() + 1LL;
  Estring result = Estring::withRoom(checkedCapacity(length));
  char* out = result.data();
  for (long i = 0; i < count(); ++i) {
    if (i > 0) *out++ = ',';
    out = stpcpy(out, peek(i)->data());
  }
  return result;
}

int StringCollection::compareKeys(Estring* a, Estring* b) {
  return compareWords(a->data(), b->data());
}

int WestringCollection::addCopy(const Westring& text) {
  return insertCopy(*this, text);
}

int FnStringCollection::compareKeys(Westring* a, Westring* b) {
  return compareNoCase(a->data(), b->data());
}

int NameCollection::compareKeys(Westring* a, Westring* b) {
  return wcscmp(a->data(), b->data());
}

Estring nextField(const char*& cursor) {
  const char* start = cursor;
  std::string field;
  bool quoted = false;
  while (*cursor != 0) {
    char character = *cursor;
    if (character == ',' && !quoted) {
      ++cursor;
      break;
    }
    if (character == '\\') {
      char escaped = readEscape(cursor);
      if (escaped != 0) field += escaped;
      continue;
    }
    if (character == '"') {
      if (!quoted && cursor != start && cursor[-1] == '"') field += character;
      quoted = !quoted;
    } else if (character != '\n') {
      field += character;
    }
    ++cursor;
  }
  return Estring(field.c_str());
}

Estring nextField(Estring& list) {
  const char* cursor = list.data();
  Estring field = nextField(cursor);
  list = cursor;
  return field;
}

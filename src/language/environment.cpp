#include "language/environment.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <cwctype>
#include <memory>
#include <string>

#include "foundation/data_paths.h"
#include "foundation/fold.h"
#include "foundation/names.h"
#include "foundation/utf8.h"

int KeyedValueSet::compareKeys(Estring* a, Estring* b) {
  return strcmp(a->data(), b->data());
}

const char* Environment::get(const char* name) {
  Estring key(name);
  for (Environment* layer = this; layer != nullptr; layer = layer->parent_) {
    const KeyedValue* pair = layer->find(&key);
    if (pair != nullptr) return pair->hidden ? nullptr : pair->value.data();
  }
  return nullptr;
}

void Environment::set(const char* name, const char* value) {
  if (value != nullptr && *value != 0) {
    put(name, value);
    return;
  }
  Estring key(name);
  if (find(&key) == nullptr) return;
  removeCurrent();
  forgetBlock();
}

void Environment::hide(const char* name) {
  put(name, "");
  Estring key(name);
  find(&key)->hidden = true;
}

void Environment::put(const char* name, const char* value) {
  forgetBlock();
  Estring key(name);
  if (KeyedValue* pair = find(&key)) {
    pair->value = value;
    pair->hidden = false;
    return;
  }
  auto pair = std::make_unique<KeyedValue>();
  pair->name = name;
  pair->value = value;
  if (insert(pair.get()) == 0) static_cast<void>(pair.release());  // the collection owns it
}

void Environment::flatten(Environment& target) {
  if (parent_ != nullptr) parent_->flatten(target);
  for (long i = 0; i < count(); ++i) {
    const KeyedValue* pair = peek(i);
    if (pair->hidden) {
      target.set(pair->name.data(), nullptr);
    } else {
      target.put(pair->name.data(), pair->value.data());
    }
  }
}

const std::vector<std::string>& Environment::block() {
  if (!blockValid_) {
    for (long i = 0; i < count(); ++i) {
      const KeyedValue* pair = peek(i);
      if (pair->hidden) continue;
      block_.push_back(std::string(pair->name.data()) + "=" + pair->value.data());
    }
    blockValid_ = true;
  }
  return block_;
}

void Environment::forgetBlock() {
  block_.clear();
  blockValid_ = false;
}

ProcessEnvironment::ProcessEnvironment() {
  if (environ == nullptr) return;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const char* separator = strchr(*variable, '=');
    if (separator == nullptr || separator == *variable) continue;
    std::string name(*variable, separator - *variable);
    Estring key(name.c_str());
    if (find(&key) == nullptr) put(name.c_str(), separator + 1);  // the first counts, as for getenv
  }
}

Environment& processEnvironment() {
  static ProcessEnvironment layer;
  return layer;
}

Environment& configuredEnvironment() {
  static Environment layer(&processEnvironment());
  return layer;
}

Environment& sessionEnvironment() {
  static Environment layer(&configuredEnvironment());
  return layer;
}

namespace {

bool belongsToName(wchar_t ch) {
  return (ch >= L'a' && ch <= L'z') || (ch >= L'A' && ch <= L'Z') || (ch >= L'0' && ch <= L'9') ||
         ch == L'_';
}

bool endsCommandName(wchar_t ch) {
  return ch == 0 || ch == L'$' || ch == L'/' || iswspace(static_cast<wint_t>(ch)) != 0;
}

const char* sessionValue(const std::wstring& name) {
  return sessionEnvironment().get(toUtf8(name.c_str()).data());
}

Westring home() {
  const char* value = sessionEnvironment().get("HOME");
  return value != nullptr && *value != 0 ? decodeFileName(value) : homeDirectory();
}

// What this program was started with isn't true for a command that it runs.
bool isToldAnew(const std::wstring& name) {
  const Estring key = toUtf8(name.c_str());
  const auto isKey = [&key](const char* other) { return strcmp(key.data(), other) == 0; };
  return isKey("PWD") || isKey("TERM") ||
         std::any_of(std::begin(OfOtherTerminals), std::end(OfOtherTerminals), isKey);
}

// As it is written, or in capitals.
const char* commandValue(const wchar_t* begin, const wchar_t* end) {
  if (begin == end) return nullptr;
  std::wstring name(begin, end);
  if (isToldAnew(name)) return nullptr;
  if (const char* value = sessionValue(name)) return value;
  for (wchar_t& ch : name) ch = foldChar(ch);
  return isToldAnew(name) ? nullptr : sessionValue(name);
}

}  // namespace

Westring expandPathVariables(const Westring& text) {
  std::wstring result;
  const wchar_t* cursor = text.data();
  if (cursor[0] == L'~' && cursor[1] == 0) return home();
  if (cursor[0] == L'~' && cursor[1] == L'/') {
    Westring prefix = addSlash(home());
    result = prefix.data();
    cursor += 2;
  }
  while (*cursor != 0) {
    if (*cursor != L'$' || !belongsToName(cursor[1])) {
      result += *cursor++;
      continue;
    }
    const wchar_t* end = cursor + 1;
    while (belongsToName(*end)) ++end;
    const char* value = sessionValue(std::wstring(cursor + 1, end));
    cursor = end;
    if (value == nullptr || *value == 0) continue;
    result += decodeFileName(value).data();
    if (*cursor == L'$') ++cursor;
  }
  return Westring(result.c_str());
}

Westring expandCommandVariables(const Westring& text) {
  std::wstring result;
  const wchar_t* cursor = text.data();
  while (*cursor != 0) {
    if (*cursor == L'\\' && cursor[1] != 0) {
      result.append(cursor, 2);
      cursor += 2;
      continue;
    }
    if (*cursor != L'$') {
      result += *cursor++;
      continue;
    }
    const wchar_t* end = cursor + 1;
    while (!endsCommandName(*end)) ++end;
    const char* value = commandValue(cursor + 1, end);
    if (value == nullptr) {
      result += *cursor++;
      continue;
    }
    result += decodeFileName(value).data();
    cursor = *end == L'$' ? end + 1 : end;
  }
  return Westring(result.c_str());
}

#include "syntax/syntax_rules.h"

#include <algorithm>
#include <utility>

#include "foundation/string_collections.h"

namespace {
constexpr size_t FirstSlots = 16;
}  // namespace

SyntaxText::SyntaxText(std::wstring text, SyntaxCase how) : text_(std::move(text)), case_(how) {
  if (case_ == SyntaxCase::Ignored) {
    std::transform(text_.begin(), text_.end(), text_.begin(), foldChar);
  }
}

bool SyntaxText::standsAt(std::wstring_view line, size_t at) const {
  if (text_.empty()) return false;
  const std::wstring_view there = line.substr(at, text_.size());
  return std::equal(text_.begin(), text_.end(), there.begin(), there.end(),
                    [this](wchar_t wanted, wchar_t character) { return same(character, wanted); });
}

CSyntaxContext::CSyntaxContext(std::string_view list) : outside_(list.empty()) {
  const std::string fields(list);
  const char* cursor = fields.c_str();
  while (*cursor != 0) {
    std::string name = nextField(cursor).data();
    if (name.empty()) outside_ = true;
    std::transform(name.begin(), name.end(), name.begin(), lowerAscii<char>);
    names_.push_back(std::move(name));
  }
  std::sort(names_.begin(), names_.end());
  names_.erase(std::unique(names_.begin(), names_.end()), names_.end());
}

uint32_t WordHash::of(std::wstring_view word) {
  WordHash hash;
  for (wchar_t character : word) hash.add(character);
  return hash.value();
}

bool WordCollection::same(std::wstring_view a, std::wstring_view b) const {
  if (case_ == SyntaxCase::Exact) return a == b;
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](wchar_t x, wchar_t y) { return lowerAscii(x) == lowerAscii(y); });
}

bool WordCollection::holds(std::wstring_view word, uint32_t hash) const {
  if (slots_.empty()) return false;
  const size_t mask = slots_.size() - 1;
  for (size_t slot = hash & mask; slots_[slot] != 0; slot = (slot + 1) & mask) {
    const Word& candidate = words_[slots_[slot] - 1];
    if (candidate.hash == hash && same(candidate.text, word)) return true;
  }
  return false;
}

void WordCollection::add(std::wstring_view word) {
  const uint32_t hash = WordHash::of(word);
  if (holds(word, hash)) return;
  words_.push_back(Word{std::wstring(word), hash});
  if (words_.size() * 2 > slots_.size()) {
    grow();
  } else {
    place(static_cast<uint32_t>(words_.size() - 1));
  }
}

void WordCollection::place(uint32_t index) {
  const size_t mask = slots_.size() - 1;
  size_t slot = words_[index].hash & mask;
  while (slots_[slot] != 0) slot = (slot + 1) & mask;
  slots_[slot] = index + 1;
}

void WordCollection::grow() {
  slots_.assign(std::max(FirstSlots, slots_.size() * 2), 0);
  for (uint32_t index = 0; index < words_.size(); ++index) place(index);
}

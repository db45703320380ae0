#include "editor/text/byte_pattern.h"

#include <algorithm>
#include <cstring>
#include <set>

#include "foundation/fold.h"

namespace {

// All characters that fold as this one does.
std::wstring foldedAlike(wchar_t character) {
  const wchar_t folded = foldChar(character);
  std::wstring all(1, folded);
  for (const FoldPair& pair : foldPairs) {
    const wchar_t lower = pair.lower;
    if (lower != folded && foldChar(lower) == folded) all += lower;
  }
  if (all.find(character) == std::wstring::npos) all += character;
  return all;
}

// What a byte of a code page folds to, in that page.
char foldedByte(char byte, const TextEncoding& encoding) {
  std::wstring character;
  decodeText({&byte, 1}, encoding, character);
  const std::wstring folded(1, foldChar(character[0]));
  std::string bytes;
  const bool held = encodeText(folded, encoding, bytes) == AllEncoded && bytes.size() == 1;
  return held ? bytes[0] : byte;
}

// What each byte folds to.
std::string foldedBytes(const TextEncoding& encoding) {
  constexpr int ByteValues = 256;
  std::string folded;
  for (int value = 0; value < ByteValues; ++value) {
    folded += foldedByte(static_cast<char>(value), encoding);
  }
  return folded;
}

}  // namespace

BytePattern::BytePattern(std::wstring_view text, const TextEncoding& encoding, CaseRule rule) {
  if (encoding.format == TextFormat::CodePage) {
    addPageElements(text, rule, encoding);
  } else {
    addElements(text, rule, encoding);
  }
  for (const Element& element : elements_) {
    size_t longest = 0;
    std::vector<Way>& ways = ways_.emplace_back();
    for (const std::string& way : element) {
      longest = std::max(longest, way.size());
      ways.emplace_back(way);
    }
    longest_ += static_cast<int64_t>(longest);
  }
  if (valid()) chooseKey();
}

void BytePattern::addElements(std::wstring_view text, CaseRule rule, const TextEncoding& encoding) {
  for (const wchar_t character : text) {
    Element element;
    const std::wstring alike =
        rule == CaseRule::Exact ? std::wstring(1, character) : foldedAlike(character);
    for (const wchar_t way : alike) {
      std::string bytes;
      if (encodeText({&way, 1}, encoding, bytes) == AllEncoded) element.push_back(bytes);
    }
    if (element.empty()) {
      elements_.clear();
      return;
    }
    elements_.push_back(element);
  }
}

void BytePattern::addPageElements(std::wstring_view text, CaseRule rule,
                                  const TextEncoding& encoding) {
  std::string bytes;
  if (encodeText(text, encoding, bytes) != AllEncoded) return;
  std::string folded;
  if (rule == CaseRule::Folded) folded = foldedBytes(encoding);
  for (const char byte : bytes) {
    Element& element = elements_.emplace_back(1, std::string(1, byte));
    for (size_t other = 0; other < folded.size(); ++other) {
      const char way = static_cast<char>(other);
      const bool alike = folded[other] == folded[static_cast<unsigned char>(byte)];
      if (alike && way != byte) element.emplace_back(1, way);
    }
  }
}

void BytePattern::chooseKey() {
  for (size_t element = 0; element < elements_.size(); ++element) {
    const ByteRow row(bytesFrom(element));
    if (element > 0 && row.weight() >= key_.weight()) continue;
    key_ = row;
    keyElement_ = element;
  }
}

// What each byte may be from the beginning of that character on, whichever ways those before it are
// written; as far as every way goes.
std::vector<std::string> BytePattern::bytesFrom(size_t element) const {
  std::vector<std::string> result(ByteRow::Longest);
  std::set<size_t> starts{0};  // where the next character may begin
  for (; element < elements_.size() && *starts.begin() < ByteRow::Longest; ++element) {
    std::set<size_t> behind;
    for (const size_t start : starts) {
      for (const std::string& way : elements_[element]) {
        for (size_t i = 0; i < way.size() && start + i < ByteRow::Longest; ++i) {
          std::string& values = result[start + i];
          if (values.find(way[i]) == std::string::npos) values += way[i];
        }
        behind.insert(start + way.size());
      }
    }
    starts = behind;
  }
  result.resize(std::min(*starts.begin(), ByteRow::Longest));
  return result;
}

BytePattern::Way::Way(std::string_view text) : length(text.size()) {
  memcpy(&bytes, text.data(), length);
  memset(&mask, 0xFF, length);
}

bool BytePattern::Way::beginsAt(std::string_view text, size_t at) const {
  if (at > text.size() || text.size() - at < length) return false;
  uint32_t found = 0;
  if (text.size() - at >= sizeof found) {
    memcpy(&found, text.data() + at, sizeof found);
  } else {
    memcpy(&found, text.data() + at, length);
  }
  return (found & mask) == bytes;
}

bool BytePattern::matches(std::string_view bytes, size_t key, Match& match) const {
  size_t end = key;
  for (size_t i = keyElement_; i < ways_.size(); ++i) {
    const auto way = std::find_if(ways_[i].begin(), ways_[i].end(),
                                  [&](const Way& one) { return one.beginsAt(bytes, end); });
    if (way == ways_[i].end()) return false;
    end += way->length;
  }
  size_t begin = key;
  for (size_t i = keyElement_; i-- > 0;) {
    // Where there is too little before it, this lies behind the end.
    const auto way = std::find_if(ways_[i].begin(), ways_[i].end(), [&](const Way& one) {
      return one.beginsAt(bytes, begin - one.length);
    });
    if (way == ways_[i].end()) return false;
    begin -= way->length;
  }
  match = {static_cast<int64_t>(key - begin), static_cast<int64_t>(end - begin)};
  return true;
}

#include "viewer/search_pattern.h"

#include <algorithm>
#include <cstring>

#include "foundation/fold.h"

namespace {

constexpr size_t LongestKey = 32;  // bytes
constexpr unsigned char Nul = 0;

// How often a byte stands in files, by rough thousandths.
int weightOf(unsigned char byte) {
  static constexpr std::string_view Frequent = " etaoinsrlhdcumfpgybwv0\n1_.k,-=;()*/2:x\"'3ETAS";
  if (byte == Nul) return 200;
  if (byte == 0xFF) return 20;
  const size_t place = Frequent.find(static_cast<char>(byte));
  return place == std::string_view::npos ? 2 : 60 - static_cast<int>(place);
}

int weightOf(const std::string& values) {
  int weight = 0;
  for (const char value : values) weight += weightOf(static_cast<unsigned char>(value));
  return weight;
}

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

bool haveOneLength(const std::vector<std::string>& ways) {
  return std::all_of(ways.begin(), ways.end(),
                     [&](const std::string& way) { return way.size() == ways[0].size(); });
}

std::string bytesAtOffset(const std::vector<std::string>& ways, size_t offset) {
  std::string values;
  for (const std::string& way : ways) {
    if (values.find(way[offset]) == std::string::npos) values += way[offset];
  }
  return values;
}

// What the byte `b` of a code page folds to, in that page.
char foldedByte(char byte, const TextEncoding& encoding) {
  std::wstring character;
  decodeText({&byte, 1}, encoding, character);
  const std::wstring folded(1, foldChar(character[0]));
  std::string bytes;
  const bool held = encodeText(folded, encoding, bytes) == AllEncoded && bytes.size() == 1;
  return held ? bytes[0] : byte;
}

// Sixteen bytes at once, on whatever the machine has for that.
using Bytes = unsigned char __attribute__((vector_size(16)));

struct Values {
  explicit Values(const std::string& values)
      : a(static_cast<unsigned char>(values[0])),
        b(static_cast<unsigned char>(values[values.size() / 2])),
        c(static_cast<unsigned char>(values.back())) {}

  auto in(const char* bytes) const {
    Bytes block;
    memcpy(&block, bytes, sizeof block);
    return (block == a) | (block == b) | (block == c);
  }
  bool has(char byte) const {
    const auto value = static_cast<unsigned char>(byte);
    return value == a || value == b || value == c;
  }

  unsigned char a, b, c;
};

}  // namespace

SearchPattern::SearchPattern(std::wstring_view text, const TextEncoding& encoding, CaseRule rule) {
  if (encoding.format == TextFormat::CodePage) {
    addPageElements(text, rule, encoding);
  } else {
    addElements(text, rule, encoding);
  }
  for (const Element& element : elements_) {
    size_t longest = 0;
    for (const std::string& way : element) longest = std::max(longest, way.size());
    longest_ += static_cast<int64_t>(longest);
  }
  if (valid()) chooseKey();
}

void SearchPattern::addElements(std::wstring_view text, CaseRule rule,
                                const TextEncoding& encoding) {
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

void SearchPattern::addPageElements(std::wstring_view text, CaseRule rule,
                                    const TextEncoding& encoding) {
  std::string bytes;
  if (encodeText(text, encoding, bytes) != AllEncoded) return;
  for (const char byte : bytes) {
    Element element{std::string(1, byte)};
    for (int other = 0; rule == CaseRule::Folded && other < 256; ++other) {
      const char way = static_cast<char>(other);
      if (way == byte || foldedByte(way, encoding) != foldedByte(byte, encoding)) continue;
      element.push_back(std::string(1, way));
    }
    elements_.push_back(element);
  }
}

// The two bytes near each other that are seldom there together.
void SearchPattern::chooseKey() {
  int64_t lightest = INT64_MAX;
  for (size_t element = 0; element < elements_.size(); ++element) {
    const std::vector<KeyByte> bytes = keyBytesFrom(element);
    for (size_t i = 0; i < bytes.size(); ++i) {
      for (size_t j = i; j < bytes.size(); ++j) {
        constexpr int64_t Always = 1000;  // for a byte alone
        const int64_t weight = int64_t{bytes[i].weight} * (j > i ? bytes[j].weight : Always);
        if (weight >= lightest) continue;
        lightest = weight;
        keyElement_ = element;
        first_ = bytes[i];
        second_ = bytes[j];
      }
    }
  }
  keyLength_ = second_.offset + 1;
  for (const char value : first_.values) table_[static_cast<unsigned char>(value)] = true;
}

// The bytes that stand at a known place from the beginning of that character on.
std::vector<SearchPattern::KeyByte> SearchPattern::keyBytesFrom(size_t element) const {
  std::vector<KeyByte> result;
  size_t offset = 0;
  for (; element < elements_.size() && offset < LongestKey; ++element) {
    const Element& ways = elements_[element];
    const bool fixed = haveOneLength(ways);
    for (size_t i = 0; i < (fixed ? ways[0].size() : 1); ++i) {
      const std::string values = bytesAtOffset(ways, i);
      // Many values cost more than they tell.
      const int costs = values.size() > MostValues ? 1000 : 0;
      result.push_back({offset + i, values, weightOf(values) + costs});
    }
    if (!fixed) break;
    offset += ways[0].size();
  }
  return result;
}

size_t SearchPattern::findKey(std::string_view bytes, size_t from) const {
  const bool few = first_.values.size() <= MostValues && second_.values.size() <= MostValues;
  return few ? findPair(bytes, from) : findByTable(bytes, from);
}

size_t SearchPattern::findPair(std::string_view bytes, size_t from) const {
  const Values one(first_.values);
  const Values two(second_.values);
  const char* const firsts = bytes.data() + first_.offset;
  const char* const seconds = bytes.data() + second_.offset;
  size_t at = from;
  while (at + second_.offset + 64 <= bytes.size()) {
    const auto a = one.in(firsts + at) & two.in(seconds + at);
    const auto b = one.in(firsts + at + 16) & two.in(seconds + at + 16);
    const auto c = one.in(firsts + at + 32) & two.in(seconds + at + 32);
    const auto d = one.in(firsts + at + 48) & two.in(seconds + at + 48);
    const auto any = a | b | c | d;
    uint64_t halves[2];
    memcpy(halves, &any, sizeof halves);
    if ((halves[0] | halves[1]) != 0) {
      for (const size_t end = at + 64; at < end; ++at) {
        if (one.has(firsts[at]) && two.has(seconds[at])) return at;
      }
    } else {
      at += 64;
    }
  }
  for (; at + second_.offset < bytes.size(); ++at) {
    if (one.has(firsts[at]) && two.has(seconds[at])) return at;
  }
  return bytes.size();
}

size_t SearchPattern::findByTable(std::string_view bytes, size_t from) const {
  for (size_t at = from; at + second_.offset < bytes.size(); ++at) {
    if (table_[static_cast<unsigned char>(bytes[at + first_.offset])]) return at;
  }
  return bytes.size();
}

bool SearchPattern::mayBegin(std::string_view bytes, size_t key) const {
  const size_t at = key + first_.offset;
  return at >= bytes.size() || table_[static_cast<unsigned char>(bytes[at])];
}

bool SearchPattern::matches(std::string_view bytes, size_t key, Match& match) const {
  size_t end = key;
  for (size_t i = keyElement_; i < elements_.size(); ++i) {
    const std::string_view rest = bytes.substr(end);
    const auto way =
        std::find_if(elements_[i].begin(), elements_[i].end(),
                     [&](const std::string& bytesOf) { return rest.starts_with(bytesOf); });
    if (way == elements_[i].end()) return false;
    end += way->size();
  }
  size_t begin = key;
  for (size_t i = keyElement_; i-- > 0;) {
    const std::string_view rest = bytes.substr(0, begin);
    const auto way =
        std::find_if(elements_[i].begin(), elements_[i].end(),
                     [&](const std::string& bytesOf) { return rest.ends_with(bytesOf); });
    if (way == elements_[i].end()) return false;
    begin -= way->size();
  }
  match = {static_cast<int64_t>(key - begin), static_cast<int64_t>(end - begin)};
  return true;
}

#include "viewer/search_pattern.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>

#include "foundation/fold.h"

namespace {

constexpr size_t LongestKey = 32;  // bytes, as many as a number has bits
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

constexpr size_t GroupBytes = 4 * sizeof(Bytes);

bool any(const Bytes& bytes) {
  uint64_t halves[2];
  memcpy(halves, &bytes, sizeof halves);
  return (halves[0] | halves[1]) != 0;
}

// Eight bytes in the order of memory, each nothing but ones or zeros: the first one that isn't
// zero, and the rest without it.
size_t firstOf(uint64_t bytes) {
  const int bits = std::endian::native == std::endian::little ? std::countr_zero(bytes)
                                                              : std::countl_zero(bytes);
  return static_cast<size_t>(bits) / 8;
}
void dropFirst(uint64_t& bytes) {
  const size_t first = firstOf(bytes);
  const size_t shift = std::endian::native == std::endian::little ? first : 7 - first;
  bytes &= ~(uint64_t{0xFF} << shift * 8);
}

struct Values {
  explicit Values(const std::string& values)
      : a(static_cast<unsigned char>(values[0])),
        b(static_cast<unsigned char>(values[values.size() / 2])),
        c(static_cast<unsigned char>(values.back())) {}

  Bytes in(const char* bytes) const {
    Bytes block;
    memcpy(&block, bytes, sizeof block);
    const auto hits = (block == a) | (block == b) | (block == c);
    memcpy(&block, &hits, sizeof block);
    return block;
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
  for (const KeyByte& byte : keyBytesFrom(keyElement_)) {
    for (const char value : byte.values) {
      offsets_[static_cast<unsigned char>(value)] |= 1u << byte.offset;
    }
    knownLength_ = byte.offset + 1;
  }
}

// The bytes that stand at a known place from the beginning of that character on.
std::vector<SearchPattern::KeyByte> SearchPattern::keyBytesFrom(size_t element) const {
  std::vector<KeyByte> result;
  size_t offset = 0;
  for (; element < elements_.size() && offset < LongestKey; ++element) {
    const Element& ways = elements_[element];
    const bool fixed = haveOneLength(ways);
    for (size_t i = 0; i < (fixed ? ways[0].size() : 1) && offset + i < LongestKey; ++i) {
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
  for (; at + second_.offset + GroupBytes <= bytes.size(); at += GroupBytes) {
    const Bytes hits[4] = {one.in(firsts + at) & two.in(seconds + at),
                           one.in(firsts + at + 16) & two.in(seconds + at + 16),
                           one.in(firsts + at + 32) & two.in(seconds + at + 32),
                           one.in(firsts + at + 48) & two.in(seconds + at + 48)};
    if (!any(hits[0] | hits[1] | hits[2] | hits[3])) continue;
    uint64_t parts[GroupBytes / sizeof(uint64_t)];
    memcpy(parts, hits, sizeof parts);
    for (size_t part = 0; part < std::size(parts); ++part) {
      for (; parts[part] != 0; dropFirst(parts[part])) {
        const size_t key = at + part * sizeof(uint64_t) + firstOf(parts[part]);
        if (fitsAt(bytes.data() + key, bytes.size() - key)) return key;
      }
    }
  }
  for (; at + second_.offset < bytes.size(); ++at) {
    if (one.has(firsts[at]) && two.has(seconds[at]) &&
        fitsAt(bytes.data() + at, bytes.size() - at)) {
      return at;
    }
  }
  return bytes.size();
}

size_t SearchPattern::findByTable(std::string_view bytes, size_t from) const {
  for (size_t at = from; at + second_.offset < bytes.size(); ++at) {
    if (fitsAt(bytes.data() + at, bytes.size() - at)) return at;
  }
  return bytes.size();
}

// Whether each of these bytes may stand at its offset of the key.
bool SearchPattern::fitsAt(const char* bytes, size_t count) const {
  const size_t known = std::min(count, knownLength_);
  for (size_t i = 0; i < known; ++i) {
    if ((offsets_[static_cast<unsigned char>(bytes[i])] >> i & 1) == 0) return false;
  }
  return true;
}

bool SearchPattern::mayBegin(std::string_view bytes, size_t key) const {
  return fitsAt(bytes.data() + key, bytes.size() - key);
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

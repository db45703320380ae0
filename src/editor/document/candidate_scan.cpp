#include "editor/document/candidate_scan.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

#include "editor/text/code_page_codec.h"
#include "foundation/fold.h"

namespace {
// Sixteen bytes at once, on whatever the machine has for that.
using Vector = unsigned char __attribute__((vector_size(16)));

// For each character that others fold to: those others.
const std::unordered_map<wchar_t, std::vector<wchar_t>>& foldedCharacters() {
  static const auto map = [] {
    std::unordered_map<wchar_t, std::vector<wchar_t>> result;
    for (wchar_t c = 0; c < static_cast<wchar_t>(FoldLimit); ++c)
      if (const wchar_t folded = foldChar(c); folded != c) result[folded].push_back(c);
    return result;
  }();
  return map;
}

// The bytes of each character that counts as `character`; none when the storage holds none.
std::vector<std::string> spellingsOf(wchar_t character, bool folds, const TextStorage& storage) {
  std::wstring characters(1, character);
  if (folds) {
    characters[0] = foldChar(character);
    const auto others = foldedCharacters().find(characters[0]);
    if (others != foldedCharacters().end())
      characters.append(others->second.begin(), others->second.end());
  }
  std::vector<std::string> spellings;
  for (const wchar_t c : characters) {
    std::string bytes;
    if (encodeText({&c, 1}, storage.encoding, bytes) == AllEncoded)
      spellings.push_back(std::move(bytes));
  }
  return spellings;
}

// How often a byte stands in texts, about.
int commonness(unsigned char byte) {
  constexpr std::string_view MostCommon = " etaoinsrhldcum";
  constexpr int Letter = 20;
  constexpr int Other = 10;
  constexpr int High = 30;  // a part of a character that isn't ASCII
  constexpr int Common = 40;
  const char lower = lowerAscii(static_cast<char>(byte));
  if (const size_t at = MostCommon.find(lower); at != std::string_view::npos)
    return Common + static_cast<int>(MostCommon.size() - at);
  if (byte >= 0x80) return High;
  return lower >= 'a' && lower <= 'z' ? Letter : Other;
}
}  // namespace

void CandidateScan::ByteSet::add(char byte) {
  const auto index = static_cast<unsigned char>(byte);
  if (holds[index]) return;
  holds[index] = true;
  if (count == 0) two.fill(index);
  if (count == 1) two[1] = index;
  ++count;
}

bool CandidateScan::isPossible(const TextStorage& storage) {
  if (storage.isWide) return false;
  if (storage.encoding.format == TextFormat::Utf8) return true;
  return storage.encoding.format == TextFormat::CodePage &&
         CodePageCodec::of(resolvedPage(storage.encoding.page)).table() != nullptr;
}

// The bytes of one character at each place; only the first place when the lengths differ.
CandidateScan::Stretch CandidateScan::stretchOf(const std::vector<std::string>& spellings) {
  const size_t length = spellings.front().size();
  const bool isEven = std::all_of(spellings.begin(), spellings.end(),
                                  [length](const std::string& s) { return s.size() == length; });
  Stretch stretch(isEven ? length : 1);
  for (const std::string& spelling : spellings)
    for (size_t i = 0; i < stretch.size(); ++i) stretch[i].add(spelling[i]);
  return stretch;
}

CandidateScan::CandidateScan(std::wstring_view text, bool folds, const TextStorage& storage)
    : storage_(storage) {
  Stretch current;
  for (const wchar_t character : text) {
    const std::vector<std::string> spellings = spellingsOf(character, folds, storage);
    if (spellings.empty()) {
      isImpossible_ = true;
      return;
    }
    Stretch own = stretchOf(spellings);
    const bool isWhole = std::all_of(spellings.begin(), spellings.end(),
                                     [&](const std::string& s) { return s.size() == own.size(); });
    current.insert(current.end(), own.begin(), own.end());
    if (current.size() > stretch_.size()) stretch_ = current;
    if (!isWhole) current.clear();
  }
  choosePair();
}

void CandidateScan::choosePair() {
  std::vector<size_t> places;
  for (size_t i = 0; i < stretch_.size(); ++i)
    if (stretch_[i].count <= 2) places.push_back(i);
  hasPair_ = !places.empty();
  if (!hasPair_) return;
  std::stable_sort(places.begin(), places.end(), [this](size_t a, size_t b) {
    return commonness(stretch_[a].two[0]) < commonness(stretch_[b].two[0]);
  });
  pair_[0] = places.front();
  pair_[1] = places.size() > 1 ? places[1] : places.front();
}

bool CandidateScan::isCandidate(std::string_view bytes, size_t at) const {
  for (size_t i = 0; i < stretch_.size(); ++i)
    if (!stretch_[i].holds[static_cast<unsigned char>(bytes[at + i])]) return false;
  return true;
}

// The same as `first`, for whole vectors; `to` when there is none, else a place near one.
size_t CandidateScan::firstByPair(std::string_view bytes, size_t from, size_t to) const {
  const ByteSet& one = stretch_[pair_[0]];
  const ByteSet& other = stretch_[pair_[1]];
  for (; from + sizeof(Vector) <= to; from += sizeof(Vector)) {
    Vector a;
    Vector b;
    std::memcpy(&a, bytes.data() + from + pair_[0], sizeof a);
    std::memcpy(&b, bytes.data() + from + pair_[1], sizeof b);
    const auto hits =
        ((a == one.two[0]) | (a == one.two[1])) & ((b == other.two[0]) | (b == other.two[1]));
    uint64_t halves[2];
    std::memcpy(halves, &hits, sizeof halves);
    if ((halves[0] | halves[1]) == 0) continue;
    for (size_t at = from; at < from + sizeof(Vector); ++at)
      if (isCandidate(bytes, at)) return at;
  }
  return from;
}

size_t CandidateScan::first(std::string_view bytes, size_t from, size_t to) const {
  if (isImpossible_ || bytes.size() < stretch_.size()) return None;
  to = std::min(to, bytes.size() - stretch_.size() + 1);
  if (hasPair_ && from < to) from = firstByPair(bytes, from, to);
  for (; from < to; ++from)
    if (isCandidate(bytes, from)) return from;
  return None;
}

size_t CandidateScan::last(std::string_view bytes, size_t from, size_t to) const {
  constexpr size_t Window = 16384;
  while (to > from) {
    const size_t start = to - std::min(Window, to - from);
    size_t found = None;
    for (size_t at = first(bytes, start, to); at != None; at = first(bytes, at + 1, to)) found = at;
    if (found != None) return found;
    to = start;
  }
  return None;
}

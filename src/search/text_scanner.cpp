#include "search/text_scanner.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <utility>

#include "editor/text/whole_word.h"
#include "foundation/system.h"

namespace {

constexpr size_t MarginsKept = 4;  // when the window moves on

using Ways = std::vector<SearchedText::Way>;

void addWay(Ways& ways, std::wstring_view text, TextEncoding encoding, CaseRule rule) {
  BytePattern pattern(text, encoding, rule);
  if (pattern.valid()) ways.push_back({encoding, std::move(pattern)});
}

}  // namespace

bool isAscii(std::wstring_view text) {
  return std::all_of(text.begin(), text.end(), [](wchar_t c) { return c >= 0 && c < 0x80; });
}

SearchedText::SearchedText(const Westring& text, CaseRule rule, bool whole) : wholeWord(whole) {
  const std::wstring_view characters(text.data(), static_cast<size_t>(text.length()));
  addWay(plain, characters, {TextFormat::CodePage}, rule);
  if (!isAscii(characters)) addWay(plain, characters, {TextFormat::Utf8}, rule);
  addWay(littleEndian, characters, {TextFormat::Utf16Le}, rule);
  addWay(bigEndian, characters, {TextFormat::Utf16Be}, rule);
  for (const Ways* ways : {&plain, &littleEndian, &bigEndian}) {
    for (const Way& way : *ways) longest = std::max(longest, way.pattern.longest());
  }
}

TextScanner::TextScanner(const SearchedText& text, StopAsked stop, size_t blockBytes)
    : text_(text),
      stop_(std::move(stop)),
      blockBytes_(blockBytes),
      margin_(text.longest + static_cast<int64_t>(ByteRow::Longest) + LongestCharacter),
      buffer_(std::make_unique_for_overwrite<char[]>(blockBytes +
                                                     MarginsKept * static_cast<size_t>(margin_))) {}

void TextScanner::start(int fd, int64_t size) {
  fd_ = fd;
  size_ = size > 0 ? size : std::numeric_limits<int64_t>::max();
  base_ = 0;
  length_ = 0;
  ended_ = false;
  ways_.clear();
}

// By the file's mark, once its first bytes are there.
bool TextScanner::choosesWays() {
  const auto begins = [this](TextFormat format) { return window().starts_with(markOf(format)); };
  const Ways& ways = begins(TextFormat::Utf16Le)   ? text_.littleEndian
                     : begins(TextFormat::Utf16Be) ? text_.bigEndian
                                                   : text_.plain;
  for (const SearchedText::Way& way : ways) ways_.push_back({&way, 0, {}});
  return !ways_.empty();
}

// Lets the window begin at `base`, which lies in it or right behind it, and fills it up by a block.
ScanResult TextScanner::moveWindow(int64_t base) {
  if (stop_()) return ScanResult::Stopped;
  const auto dropped = static_cast<size_t>(base - base_);
  length_ -= dropped;
  memmove(buffer_.get(), buffer_.get() + dropped, length_);
  base_ = base;
  const int64_t left = size_ - windowEnd();
  auto wanted = static_cast<size_t>(std::min(static_cast<int64_t>(blockBytes_), left));
  while (wanted > 0) {
    const ssize_t got = System::readAt(fd_, buffer_.get() + length_, wanted, windowEnd());
    if (got < 0) {
      error_ = errno;
      return ScanResult::Failed;
    }
    ended_ = got == 0;
    if (ended_) break;
    length_ += static_cast<size_t>(got);
    wanted -= static_cast<size_t>(got);
  }
  return ScanResult::Found;
}

ScanResult TextScanner::next(int64_t from, TextHit& hit) {
  if (ways_.empty()) {
    const ScanResult result = moveWindow(0);
    if (result != ScanResult::Found) return result;
    if (!choosesWays()) return ScanResult::NotFound;
  }
  for (;;) {
    const Progress* first = nullptr;
    for (Progress& progress : ways_) {
      search(progress, from);
      if (progress.hit && (!first || progress.hit->position < first->hit->position)) {
        first = &progress;
      }
    }
    // Near the end of the window another way may still turn out to begin before it.
    if (first && (atEnd() || ways_.size() == 1 || first->hit->end() + margin_ <= keysEnd())) {
      hit = *first->hit;
      return ScanResult::Found;
    }
    if (atEnd()) return ScanResult::NotFound;
    const int64_t needed = first ? std::min(first->hit->position, keysEnd()) : keysEnd();
    const ScanResult result = moveWindow(std::max(needed - margin_, base_));
    if (result != ScanResult::Found) return result;
  }
}

// Goes on to the first hit from `from`, or to the end of the keys.
void TextScanner::search(Progress& progress, int64_t from) {
  if (progress.hit && progress.hit->position >= from) return;
  progress.hit.reset();
  const BytePattern& pattern = progress.way->pattern;
  const int64_t end = keysEnd();
  const std::string_view bytes = window().substr(
      0, static_cast<size_t>(std::min(end - base_ + margin_, static_cast<int64_t>(length_))));
  int64_t key = std::max(progress.searchedTo, from);
  while (key < end) {
    const size_t at = pattern.key().find(bytes, static_cast<size_t>(key - base_));
    key = base_ + static_cast<int64_t>(at);
    if (at >= bytes.size() || key >= end) break;
    TextHit hit;
    if (isHit(progress, key, from, hit)) {
      progress.hit = hit;
      progress.searchedTo = key + 1;
      return;
    }
    ++key;
  }
  progress.searchedTo = std::max(progress.searchedTo, end);
}

bool TextScanner::isHit(const Progress& progress, int64_t key, int64_t from, TextHit& hit) const {
  const TextEncoding& encoding = progress.way->encoding;
  if (key % unitBytes(encoding.format) != 0) return false;
  BytePattern::Match match;
  if (!progress.way->pattern.matches(window(), static_cast<size_t>(key - base_), match))
    return false;
  hit = {key - match.before, match.length, encoding};
  return hit.position >= from && (!text_.wholeWord || isWholeWord(hit));
}

bool TextScanner::isWholeWord(const TextHit& hit) const {
  constexpr auto Around = static_cast<size_t>(LongestCharacter);
  const auto start = static_cast<size_t>(hit.position - base_);
  const auto end = static_cast<size_t>(hit.end() - base_);
  const size_t before = std::min(start, Around);
  return standsAlone(window().substr(start - before, before), window().substr(end, Around),
                     hit.encoding);
}

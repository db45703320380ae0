#include "viewer/file_search.h"

#include <algorithm>

#include "editor/text/byte_pattern.h"
#include "editor/text/whole_word.h"
#include "viewer/block_scan.h"

namespace {

constexpr int64_t BytesBetweenStops = 64 * 1024;

class Search {
 public:
  Search(ViewedFile& file, const SearchValues& values, int64_t from, const StopAsked& stopAsked)
      : file_(file),
        pattern_({values.text.data(), static_cast<size_t>(values.text.length())}, file.encoding(),
                 values.caseSensitive ? CaseRule::Exact : CaseRule::Folded),
        wholeWord_(values.wholeWord),
        reverse_(values.reverse),
        unit_(unitBytes(file.encoding().format)),
        stopAsked_(stopAsked) {
    low_ = reverse_ ? 0 : std::max<int64_t>(from, 0);
    high_ = reverse_ ? std::min(from, file.size()) : file.size();
  }

  SearchHit run() {
    if (!pattern_.valid() || low_ >= high_) return {};
    if (reverse_) return runBackward();
    // The key may stand anywhere in the hit, which begins at low_ at the earliest.
    BlockScan scan(file_.bytes(), file_.limits(), low_, high_, BlockScan::Direction::Forward);
    SearchHit hit;
    while (const FileBlock* block = scan.next()) {
      for (int64_t at = std::max(block->base, low_); at < block->base + block->length;) {
        const Stretch stretch = block->from(at);
        if (!stretch.error && searchStretch(stretch, hit)) return hit;
        at = stretch.end();
      }
    }
    return hit;
  }

 private:
  SearchHit runBackward() {
    BlockScan scan(file_.bytes(), file_.limits(), high_ - 1, high_, BlockScan::Direction::Backward);
    SearchHit hit;
    while (const FileBlock* block = scan.next()) {
      for (int64_t at = block->base + block->length; at > block->base;) {
        const Stretch stretch = block->before(at);
        if (!stretch.error && searchStretch(stretch, hit)) return hit;
        at = stretch.position;
      }
    }
    return hit;
  }

  // Looks at the keys that begin in the stretch, part by part. True when the search is over.
  bool searchStretch(const Stretch& stretch, SearchHit& hit) {
    const int64_t parts = (stretch.length + BytesBetweenStops - 1) / BytesBetweenStops;
    for (int64_t i = 0; i < parts; ++i) {
      if (stopAsked_()) {
        hit.result = SearchHit::Result::Stopped;
        return true;
      }
      const int64_t part = reverse_ ? parts - 1 - i : i;
      const int64_t from = part * BytesBetweenStops;
      const int64_t to = std::min(from + BytesBetweenStops, stretch.length);
      if (searchPart(stretch, from, to, hit)) return true;
    }
    return false;
  }

  // The keys that begin in from..to of the stretch: the first hit, or the last one.
  bool searchPart(const Stretch& stretch, int64_t from, int64_t to, SearchHit& hit) {
    const auto keyTail = static_cast<int64_t>(pattern_.key().reach());
    const int64_t inside = std::min(to + keyTail, stretch.length);
    const std::string_view bytes = stretch.text().substr(0, static_cast<size_t>(inside));
    bool found = false;
    auto at = static_cast<size_t>(from);
    while ((at = pattern_.key().find(bytes, at)) < bytes.size()) {
      found |= takeKey(stretch, static_cast<int64_t>(at), hit);
      if (found && !reverse_) return true;
      ++at;
    }
    // Those that go on behind the stretch.
    for (int64_t key = std::max(from, stretch.length - keyTail); key < to; ++key) {
      if (!pattern_.key().standsAt(stretch.text(), static_cast<size_t>(key))) continue;
      found |= takeKey(stretch, key, hit);
      if (found && !reverse_) return true;
    }
    return found;
  }

  bool takeKey(const Stretch& stretch, int64_t key, SearchHit& hit) {
    const int64_t position = stretch.position + key;
    if (position % unit_ != 0) return false;
    BytePattern::Match match;
    const int64_t longest = pattern_.longest();
    const bool inside = key >= longest && key + longest <= stretch.length;
    if (inside ? !pattern_.matches(stretch.text(), static_cast<size_t>(key), match)
               : !matchesAround(position, match)) {
      return false;
    }
    const int64_t start = position - match.before;
    const int64_t end = start + match.length;
    if (start < low_ || end > high_ || (wholeWord_ && !isWholeWord(start, end))) return false;
    hit = {SearchHit::Result::Found, start, match.length};
    return true;
  }

  // Whether it lies around the key, with what the file holds outside of the stretch.
  bool matchesAround(int64_t position, BytePattern::Match& match) {
    readAround(position, position, pattern_.longest());
    return pattern_.matches(before_ + behind_, before_.size(), match);
  }

  bool isWholeWord(int64_t start, int64_t end) {
    readAround(start, end, LongestCharacter);
    return standsAlone(before_, behind_, file_.encoding());
  }

  // What can be read next to `start` before it, and next to `end` behind it: `count` bytes or a few
  // more.
  void readAround(int64_t start, int64_t end, int64_t count) {
    const int64_t base = std::max<int64_t>(start - count, 0) / LongestCharacter * LongestCharacter;
    const int64_t length = std::min(end + count, file_.size()) - base;
    FileBlock around;
    around.bytes = std::make_unique_for_overwrite<char[]>(static_cast<size_t>(length));
    file_.bytes().readBlock(around, base, length);
    before_.clear();
    behind_.clear();
    const int64_t last = base + around.length;
    if (start > base && start <= last) before_ = readable(around.before(start));
    if (end < last) behind_ = readable(around.from(end));
  }

  static std::string_view readable(const Stretch& stretch) {
    return stretch.error ? std::string_view() : stretch.text();
  }

  ViewedFile& file_;
  const BytePattern pattern_;
  const bool wholeWord_;
  const bool reverse_;
  const int64_t unit_;
  const StopAsked& stopAsked_;
  int64_t low_;   // hits lie from here
  int64_t high_;  // to here
  std::string before_;
  std::string behind_;
};

}  // namespace

SearchHit searchFile(ViewedFile& file, const SearchValues& values, int64_t from,
                     const StopAsked& stopAsked) {
  return Search(file, values, from, stopAsked).run();
}

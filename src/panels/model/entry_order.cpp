#include "panels/model/entry_order.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <span>
#include <vector>

#include "foundation/fold.h"

namespace {

constexpr int KeyBytes = 8;
constexpr size_t SmallRun = 3;  // below this a compare is cheaper than new keys

bool isReversed(int code) {
  return code >= SortCode::Reverse;
}
int plainCode(int code) {
  return isReversed(code) ? code - SortCode::Reverse : code;
}

// The order of names without its last key, the exact one: texts that differ in case only are equal.
int compareFolded(const wchar_t* a, const wchar_t* b) {
  for (;; a += KeyBytes, b += KeyBytes) {
    const uint64_t keyA = compareNamesPrefix(a);
    const uint64_t keyB = compareNamesPrefix(b);
    if (keyA != keyB) return keyA < keyB ? -1 : 1;
    // A text that ends goes before one that goes on with a character that counts as 0.
    const auto lengthA = static_cast<int>(wcsnlen(a, KeyBytes));
    const auto lengthB = static_cast<int>(wcsnlen(b, KeyBytes));
    if (lengthA != lengthB || lengthA < KeyBytes) return lengthA - lengthB;
  }
}

// Of a whole path the last component's.
const wchar_t* extensionOf(const wchar_t* name) {
  const wchar_t* dot = wcsrchr(name, L'.');
  return dot && !wcschr(dot, L'/') ? dot + 1 : L"";
}

uint32_t dateAndTime(const entry* item) {
  return static_cast<uint32_t>(item->date) << 16 | item->time;
}

template <class Number>
int largestFirst(Number a, Number b) {
  return (a < b) - (a > b);
}

int compareWithinGroup(const entry* a, const entry* b, int code) {
  int result = 0;
  if (code == SortCode::Extension) {
    result = compareFolded(extensionOf(a->name()), extensionOf(b->name()));
  } else if (code == SortCode::Time) {
    result = largestFirst(dateAndTime(a), dateAndTime(b));
  } else if (code == SortCode::Size) {
    result = largestFirst(a->size, b->size);
  }
  return result != 0 ? result : compareNames(a->name(), b->name());
}

struct SortSlot {
  uint64_t key;
  entry* item;
};
using Run = std::span<SortSlot>;

// Sorts as a stable sort by compareEntries does, by keys of 8 bytes: runs with equal keys get the
// keys that follow, so a name is read once for each 8 of its characters instead of once a compare.
class EntrySorter {
 public:
  EntrySorter(Run slots, int code)
      : slots_(slots), code_(code), flip_(isReversed(code) ? ~uint64_t{0} : 0) {}

  void sort() {
    byKey(
        slots_, [](const entry* item) { return uint64_t{item->sortGroup}; },
        [this](Run run) { byPrimaryKey(run); });
  }

 private:
  using TextOf = const wchar_t* (*)(const entry*);
  static const wchar_t* nameOf(const entry* item) { return item->name(); }
  static const wchar_t* extension(const entry* item) { return extensionOf(item->name()); }

  void byPrimaryKey(Run run) {
    const auto names = [this](Run equal) { byText<nameOf>(equal, 0); };
    switch (plainCode(code_)) {
      case SortCode::Extension:
        return byText<extension>(run, 0);
      case SortCode::Time:
        return byKey(
            run, [this](const entry* item) { return flip_ ^ ~uint64_t{dateAndTime(item)}; }, names);
      case SortCode::Size:
        return byKey(
            run, [this](const entry* item) { return flip_ ^ ~item->size; }, names);
      default:
        return names(run);
    }
  }

  template <class Key, class Next>
  static void byKey(Run run, Key key, Next next) {
    for (SortSlot& slot : run) slot.key = key(slot.item);
    const auto less = [](const SortSlot& a, const SortSlot& b) { return a.key < b.key; };
    if (!std::is_sorted(run.begin(), run.end(), less)) {
      std::stable_sort(run.begin(), run.end(), less);
    }
    for (size_t start = 0; start < run.size();) {
      size_t end = start + 1;
      while (end < run.size() && run[end].key == run[start].key) ++end;
      if (end - start > 1) next(run.subspan(start, end - start));
      start = end;
    }
  }

  // Run is equal in its first `depth` characters, and none of its texts ends there.
  template <TextOf textOf>
  void byText(Run run, size_t depth) {
    if (run.size() < SmallRun) return byCompare(run);
    byKey(
        run,
        [this, depth](const entry* item) {
          return flip_ ^ compareNamesPrefix(textOf(item) + depth);
        },
        [this, depth](Run equal) {
          const uint64_t key = flip_ ^ equal[0].key;
          if (key & 0xFF) return byText<textOf>(equal, depth + KeyBytes);
          textsEnd<textOf>(equal, depth, key);
        });
  }

  // The texts of a run may end, or hold a character that counts as 0.
  template <TextOf textOf>
  void textsEnd(Run run, size_t depth, uint64_t key) {
    size_t length = depth;
    for (int shift = 64 - 8; key >> shift & 0xFF; shift -= 8) ++length;
    const auto ends = [length](const SortSlot& slot) { return textOf(slot.item)[length] == 0; };
    const bool sameText = std::all_of(run.begin(), run.end(), ends);
    if (sameText && textOf == extension) return byText<nameOf>(run, 0);
    byCompare(run);
  }

  void byCompare(Run run) const {
    std::stable_sort(run.begin(), run.end(), [this](const SortSlot& a, const SortSlot& b) {
      return compareEntries(a.item, b.item, code_) < 0;
    });
  }

  Run slots_;
  int code_;
  uint64_t flip_;  // turns the order of keys around for the reverse codes
};

}  // namespace

int compareEntries(const entry* a, const entry* b, int code) {
  if (isUnsorted(code)) return 0;
  if (a->sortGroup != b->sortGroup) return a->sortGroup - b->sortGroup;
  const int result = compareWithinGroup(a, b, plainCode(code));
  return isReversed(code) ? -result : result;
}

void sortEntries(Panel& panel) {
  sortEntries(std::span<entry*>(panel.entries.begin(), panel.entries.end()), panel.sort);
}

void sortEntries(std::span<entry*> entries, int code) {
  if (entries.size() < 2 || isUnsorted(code)) return;
  std::vector<SortSlot> slots;
  slots.reserve(entries.size());
  for (entry* item : entries) slots.push_back({0, item});
  EntrySorter(slots, code).sort();
  std::transform(slots.begin(), slots.end(), entries.begin(),
                 [](const SortSlot& slot) { return slot.item; });
}

int reversedSort(int code) {
  return isReversed(code) ? code - SortCode::Reverse : code + SortCode::Reverse;
}

bool isUnsorted(int code) {
  return plainCode(code) == SortCode::Unsorted;
}

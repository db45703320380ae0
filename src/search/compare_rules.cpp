#include "search/compare_rules.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <unordered_map>

#include "foundation/fold.h"
#include "foundation/names.h"
#include "language/filter_expression.h"

namespace {

constexpr int64_t UnitsPerMinute = 30;
constexpr int64_t UnitsPerHour = 60 * UnitsPerMinute;
constexpr int64_t UnitsPerDay = 24 * UnitsPerHour;
constexpr int64_t SameForOrder = 1;       // units within which neither is newer
constexpr int64_t SameForDifference = 2;  // units within which two dates are equal

bool takesPart(const entry* item) {
  static const Westring description(DescriptionFileName);
  return !item->isDirectory() && !sameWord(item->name(), description.data());
}

class MaskTest {
 public:
  explicit MaskTest(const Westring& mask) : mask_(mask), all_(filtersNothing(mask.data())) {}
  bool passes(const entry* item) const { return all_ || evaluateFilter(mask_.data(), item); }
  void tag(entry* item) const {
    if (passes(item)) item->tagged = 1;
  }

 private:
  const Westring& mask_;
  const bool all_;
};

void markByDate(ComparedPair& pair, DateRule rule) {
  const int64_t left = twoSecondUnits({pair.left->date, pair.left->time});
  const int64_t right = twoSecondUnits({pair.right->date, pair.right->time});
  const bool leftNewer = left - right > SameForOrder;
  const bool rightNewer = right - left > SameForOrder;
  switch (rule) {
    case DateRule::TagNewer:
      pair.markLeft |= leftNewer;
      pair.markRight |= rightNewer;
      break;
    case DateRule::TagOlder:
      pair.markLeft |= rightNewer;
      pair.markRight |= leftNewer;
      break;
    case DateRule::TagDifferent:
      if (std::max(left, right) - std::min(left, right) > SameForDifference) markDifferent(pair);
      break;
    case DateRule::Ignore:
      break;
  }
}

void markBySize(ComparedPair& pair, SizeRule rule) {
  const uint64_t left = pair.left->size;
  const uint64_t right = pair.right->size;
  switch (rule) {
    case SizeRule::TagLarger:
      pair.markLeft |= left > right;
      pair.markRight |= left < right;
      break;
    case SizeRule::TagSmaller:
      pair.markLeft |= left < right;
      pair.markRight |= left > right;
      break;
    case SizeRule::TagDifferent:
      if (left != right) markDifferent(pair);
      break;
    case SizeRule::Ignore:
      break;
  }
}

}  // namespace

ComparedNames matchNames(std::span<entry* const> left, std::span<entry* const> right) {
  ComparedNames result;
  std::unordered_map<std::wstring_view, size_t> places;  // in the right listing
  places.reserve(right.size());
  for (size_t i = 0; i < right.size(); ++i) {
    if (takesPart(right[i])) places.emplace(right[i]->name(), i);
  }
  std::vector<bool> matched(right.size());
  for (entry* item : left) {
    if (!takesPart(item)) continue;
    const auto found = places.find(item->name());
    if (found == places.end()) {
      result.leftOnly.push_back(item);
      continue;
    }
    matched[found->second] = true;
    result.pairs.push_back({item, right[found->second]});
  }
  for (size_t i = 0; i < right.size(); ++i) {
    if (takesPart(right[i]) && !matched[i]) result.rightOnly.push_back(right[i]);
  }
  return result;
}

void markByRules(ComparedPair& pair, const CompareRules& rules) {
  markByDate(pair, rules.date);
  markBySize(pair, rules.size);
}

bool contentsDecide(const ComparedPair& pair) {
  return !pair.markLeft || !pair.markRight;
}

bool sizesDiffer(const ComparedPair& pair) {
  return pair.left->size != pair.right->size;
}

void markDifferent(ComparedPair& pair) {
  pair.markLeft = pair.markRight = true;
}

void tagCompared(std::span<entry* const> left, std::span<entry* const> right,
                 const ComparedNames& names, const CompareRules& rules) {
  clearTags(left);
  clearTags(right);
  const MaskTest mask(rules.mask);
  for (const ComparedPair& pair : names.pairs) {
    if (pair.markLeft) mask.tag(pair.left);
    if (pair.markRight) mask.tag(pair.right);
  }
  if (!rules.unmatched) return;
  for (entry* item : names.leftOnly) mask.tag(item);
  for (entry* item : names.rightOnly) mask.tag(item);
}

void clearTags(std::span<entry* const> entries) {
  for (entry* item : entries) item->tagged = 0;
}

int64_t twoSecondUnits(DosTime words) {
  using namespace std::chrono;
  const auto monthNumber = static_cast<unsigned>(std::clamp(dosMonth(words.date), 1, 12));
  const sys_days first = year(dosYear(words.date)) / month(monthNumber) / day(1);
  const int64_t days = first.time_since_epoch().count() + dosDay(words.date);
  return days * UnitsPerDay + dosHour(words.time) * UnitsPerHour +
         dosMinute(words.time) * UnitsPerMinute + dosSecond(words.time) / 2;
}

#include "language/filter_expression.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <cwctype>
#include <limits>
#include <map>
#include <string>

#include "foundation/dos_time.h"
#include "foundation/fold.h"
#include "foundation/locale_settings.h"
#include "foundation/threads.h"
#include "foundation/users.h"
#include "foundation/wild_match.h"

namespace {

constexpr int KiloShift = 10;
constexpr int MegaShift = 20;
constexpr int GigaShift = 30;
constexpr int64_t SecondsPerDay = 86400;
constexpr int64_t SecondsPerHour = 3600;
constexpr int64_t SecondsPerMinute = 60;
constexpr long LargestDateNumber = 9999;
constexpr long FirstFullYear = 100;  // smaller ones have two digits
constexpr long FirstOldYear = 71;    // of those, the first that lies in the 1900s

bool isBlank(wchar_t ch) {
  return ch == L' ' || ch == L'\t';
}
bool isLetter(wchar_t ch) {
  return iswalpha(static_cast<wint_t>(ch)) != 0;
}
bool isLetterOrDigit(wchar_t ch) {
  return iswalnum(static_cast<wint_t>(ch)) != 0;
}

int64_t multiplySaturated(int64_t value, int64_t factor) {
  int64_t result;
  if (!__builtin_mul_overflow(value, factor, &result)) return result;
  return value < 0 ? std::numeric_limits<int64_t>::min() : std::numeric_limits<int64_t>::max();
}

wchar_t lastLetter(const std::wstring& value) {
  return value.empty() ? L'\0' : lowerAscii(value.back());
}

int64_t sizeOf(const std::wstring& value) {
  int64_t number = wcstoll(value.c_str(), nullptr, 10);
  switch (lastLetter(value)) {
    case L'k':
      return multiplySaturated(number, int64_t{1} << KiloShift);
    case L'm':
      return multiplySaturated(number, int64_t{1} << MegaShift);
    case L'g':
      return multiplySaturated(number, int64_t{1} << GigaShift);
    default:
      return number;
  }
}

int64_t secondsOf(const std::wstring& value) {
  int64_t number = wcstoll(value.c_str(), nullptr, 10);
  switch (lastLetter(value)) {
    case L'd':
      return multiplySaturated(number, SecondsPerDay);
    case L'h':
      return multiplySaturated(number, SecondsPerHour);
    case L'm':
      return multiplySaturated(number, SecondsPerMinute);
    default:
      return number;
  }
}

int64_t attributesOf(const std::wstring& value) {
  int mask = 0;
  for (wchar_t ch : value) {
    switch (lowerAscii(ch)) {
      case L'h':
        mask |= Attribute::Hidden;
        break;
      case L'r':
        mask |= Attribute::ReadOnly;
        break;
      case L'd':
        mask |= Attribute::Directory;
        break;
    }
  }
  return mask;
}

// Values outside the calendar are carried over by mktime, as in the 32nd of a month.
int64_t midnight(int year, int month, int day) {
  struct tm when {};
  when.tm_year = year - 1900;
  when.tm_mon = month - 1;
  when.tm_mday = day;
  when.tm_isdst = -1;
  return mktime(&when);
}

int64_t dateOf(const std::wstring& value) {
  int numbers[3] = {};
  const wchar_t* cursor = value.c_str();
  for (int& number : numbers) {
    number = static_cast<int>(std::clamp(wcstol(cursor, nullptr, 10), 0L, LargestDateNumber));
    while (*cursor != 0 && *cursor != localeSettings.dateSeparator) ++cursor;
    if (*cursor != 0) ++cursor;
  }
  const auto [first, second, third] = numbers;
  const auto fullYear = [](int year) {
    if (year >= FirstFullYear) return year;
    return year < FirstOldYear ? 2000 + year : 1900 + year;
  };
  switch (localeSettings.dateOrder) {
    case DateOrder::MonthDayYear:
      return midnight(fullYear(third), first, second);
    case DateOrder::DayMonthYear:
      return midnight(fullYear(third), second, first);
    case DateOrder::YearMonthDay:
      break;
  }
  return midnight(fullYear(first), second, third);
}

// A look-up in the user data base may ask a server, and a filter asks it for every entry of a
// listing: each name is looked up once. -1 when unknown.
int64_t cachedId(std::map<std::wstring, int64_t>& known, const std::wstring& name,
                 int64_t (*lookUp)(const Westring&)) {
  constexpr size_t MostNames = 256;
  static MutexSem lock;
  {
    const MutexLock guard(lock);
    if (auto found = known.find(name); found != known.end()) return found->second;
  }
  const int64_t id = name.empty() ? -1 : lookUp(name.c_str());
  const MutexLock guard(lock);
  if (known.size() >= MostNames) known.clear();
  return known[name] = id;
}

int64_t ownerOf(const std::wstring& name) {
  static std::map<std::wstring, int64_t> known;
  return cachedId(known, name, userId);
}

int64_t groupOf(const std::wstring& name) {
  static std::map<std::wstring, int64_t> known;
  return cachedId(known, name, groupId);
}

enum class Predicate { Size, Date, Age, Attrib, Owner, Group, Unknown };

Predicate predicateNamed(const std::wstring& name) {
  static const std::map<std::wstring, Predicate> names = {
      {L"size", Predicate::Size},     {L"date", Predicate::Date},   {L"age", Predicate::Age},
      {L"attrib", Predicate::Attrib}, {L"owner", Predicate::Owner}, {L"group", Predicate::Group}};
  auto found = names.find(name);
  return found == names.end() ? Predicate::Unknown : found->second;
}

// One or two characters; `second` is '=' or 0.
struct Comparison {
  wchar_t first = 0;
  wchar_t second = 0;

  bool holds(int64_t a, int64_t b) const {
    if (first == L'!') return second == L'=' && a != b;
    if (second == L'=' && a == b) return true;
    switch (first) {
      case L'<':
        return a < b;
      case L'>':
        return a > b;
      case L'=':
        return a == b;
      default:
        return false;
    }
  }
};

// Walks the text once. Both sides of '|' and '&' are always evaluated, since that is how the walk
// gets over them.
class FilterEvaluator {
 public:
  FilterEvaluator(const wchar_t* expression, const entry* item, time_t now)
      : cursor_(expression), name_(item->name()), item_(item), now_(now) {}
  // By the name alone: no predicate has an answer.
  FilterEvaluator(const wchar_t* expression, const wchar_t* name)
      : cursor_(expression), name_(name) {}

  FilterResult run() {
    FilterResult result;
    result.matches = decide() == NameVerdict::Yes;
    result.faulty = faulty_;
    return result;
  }

  NameVerdict decide() { return expression(0); }

 private:
  using Verdict = NameVerdict;
  static Verdict verdictOf(bool holds) { return holds ? Verdict::Yes : Verdict::No; }

  Verdict expression(int depth) {
    Verdict result = term(depth);
    while (takeOperator(L'|')) result = std::max(term(depth), result);
    return result;
  }

  Verdict term(int depth) {
    Verdict result = factor(depth);
    while (takeOperator(L'&')) result = std::min(factor(depth), result);
    return result;
  }

  Verdict factor(int depth) {
    if (depth > MaxFilterDepth) {
      faulty_ = true;
      return Verdict::No;
    }
    skipBlanks();
    switch (*cursor_) {
      case L'!':
        ++cursor_;
        return opposite(factor(depth + 1));
      case L'(':
        ++cursor_;
        return group(depth + 1);
      case L'%':
        ++cursor_;
        return predicate();
      default:
        return verdictOf(namePattern());
    }
  }

  static Verdict opposite(Verdict verdict) {
    if (verdict == Verdict::Depends) return verdict;
    return verdictOf(verdict == Verdict::No);
  }

  Verdict group(int depth) {
    Verdict result = expression(depth);
    if (!takeOperator(L')')) faulty_ = true;
    return result;
  }

  // Blanks at the end are dropped, unless they are quoted.
  bool namePattern() {
    std::wstring pattern;
    size_t kept = 0;
    bool quoted = false;
    for (; *cursor_ != 0; ++cursor_) {
      if (*cursor_ == L'"') {
        quoted = !quoted;
        continue;
      }
      if (!quoted && endsPattern(*cursor_)) break;
      pattern += *cursor_;
      if (quoted || !isBlank(*cursor_)) kept = pattern.size();
    }
    pattern.resize(kept);
    return wildMatch(pattern.c_str(), name_);
  }

  Verdict predicate() {
    std::wstring name;
    for (; isLetter(*cursor_); ++cursor_) name += lowerAscii(*cursor_);
    const Predicate kind = predicateNamed(name);
    const Comparison comparison = takeComparison();
    const std::wstring value = takeValue(kind);
    return item_ ? verdictOf(holds(kind, comparison, value)) : Verdict::Depends;
  }

  bool holds(Predicate kind, const Comparison& comparison, const std::wstring& value) {
    switch (kind) {
      case Predicate::Size:
        return comparison.holds(static_cast<int64_t>(std::min<uint64_t>(item_->size, INT64_MAX)),
                                sizeOf(value));
      case Predicate::Date:
        return comparison.holds(
            midnight(dosYear(item_->date), dosMonth(item_->date), dosDay(item_->date)),
            dateOf(value));
      case Predicate::Age:
        return comparison.holds(now_ - dosToTime({item_->date, item_->time}), secondsOf(value));
      case Predicate::Attrib: {
        int64_t mask = attributesOf(value);
        return comparison.holds(item_->attributes & mask, mask);
      }
      case Predicate::Owner:
        return idHolds(comparison, item_->owner, ownerOf(value));
      case Predicate::Group:
        return idHolds(comparison, item_->group, groupOf(value));
      case Predicate::Unknown:
        break;
    }
    faulty_ = true;
    return comparison.holds(0, 0);
  }

  // An unknown name matches nothing, with any operator.
  static bool idHolds(const Comparison& comparison, uint32_t id, int64_t wanted) {
    return wanted >= 0 && comparison.holds(id, wanted);
  }

  Comparison takeComparison() {
    Comparison result;
    skipBlanks();
    if (*cursor_ == 0 || endsPattern(*cursor_)) return result;
    result.first = *cursor_++;
    if (*cursor_ == L'=') result.second = *cursor_++;
    return result;
  }

  std::wstring takeValue(Predicate kind) {
    const bool isAccount = kind == Predicate::Owner || kind == Predicate::Group;
    std::wstring value;
    skipBlanks();
    for (; *cursor_ != 0; ++cursor_) {
      bool belongs = isLetterOrDigit(*cursor_) || *cursor_ == localeSettings.dateSeparator ||
                     (isAccount && wcschr(L"-_.", *cursor_) != nullptr);
      if (!belongs) break;
      value += *cursor_;
    }
    return value;
  }

  bool takeOperator(wchar_t wanted) {
    skipBlanks();
    if (*cursor_ != wanted) return false;
    ++cursor_;
    return true;
  }

  void skipBlanks() {
    while (isBlank(*cursor_)) ++cursor_;
  }

  static bool endsPattern(wchar_t ch) { return ch == L'|' || ch == L'&' || ch == L')'; }

  const wchar_t* cursor_;
  const wchar_t* name_;
  const entry* item_ = nullptr;
  time_t now_ = 0;
  bool faulty_ = false;
};

}  // namespace

FilterResult runFilter(const wchar_t* expression, const entry* item, time_t now) {
  return FilterEvaluator(expression, item, now).run();
}

bool evaluateFilter(const wchar_t* expression, const entry* item) {
  return runFilter(expression, item, time(nullptr)).matches;
}

NameVerdict filterByName(const wchar_t* expression, const wchar_t* name) {
  return FilterEvaluator(expression, name).decide();
}

EntryPtr blankEntry(const wchar_t* name) {
  EntryPtr blank(newEntry(name));
  blank->total = 0;
  return blank;
}

bool matchName(const wchar_t* expression, const wchar_t* name) {
  return evaluateFilter(expression, blankEntry(name).get());
}

bool filtersNothing(const wchar_t* expression) {
  while (isBlank(*expression)) ++expression;
  if (*expression == L'*') ++expression;
  while (isBlank(*expression)) ++expression;
  return *expression == 0;
}

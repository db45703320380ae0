#include "archive/archive_records.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <numeric>

#include "foundation/fold.h"

namespace {

constexpr uint64_t LargestSum = INT64_MAX;
constexpr int HalfBits = 32;
constexpr uint64_t LowHalf = UINT32_MAX;

uint64_t cappedSum(uint64_t a, uint64_t b) {
  return a > LargestSum || b > LargestSum - a ? LargestSum : a + b;
}

uint32_t rankInPath(wchar_t character) {
  return character == L'/' ? 0 : static_cast<uint32_t>(character);
}

uint32_t folded(wchar_t character) {
  return static_cast<uint32_t>(foldChar(character));
}

// Eight places of the order of names, from `start` on, as one number: of names that are alike
// before it, those whose numbers differ compare as these do, equal numbers say nothing. A character
// beyond Latin-1 ends it.
uint64_t orderKey(std::wstring_view name, size_t start) {
  constexpr size_t Places = sizeof(uint64_t);
  constexpr uint32_t Beyond = 0xFF;
  uint64_t key = 0;
  for (size_t i = 0; i < Places && start + i < name.size(); ++i) {
    const uint32_t rank = std::min(folded(name[start + i]), Beyond);
    key |= uint64_t{rank} << (Places - 1 - i) * 8;
    if (rank == Beyond) break;
  }
  return key;
}

size_t likeCharacters(std::wstring_view a, std::wstring_view b) {
  const auto alike = [](wchar_t left, wchar_t right) { return folded(left) == folded(right); };
  return static_cast<size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end(), alike).first -
                             a.begin());
}

bool nameBefore(std::wstring_view a, std::wstring_view b) {
  const size_t alike = likeCharacters(a, b);
  if (alike < a.size() && alike < b.size()) return folded(a[alike]) < folded(b[alike]);
  return a.size() != b.size() ? a.size() < b.size() : a < b;
}

}  // namespace

bool directoryBefore(std::wstring_view a, std::wstring_view b) {
  const auto [left, right] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
  if (left == a.end() || right == b.end()) return left == a.end() && right != b.end();
  return rankInPath(*left) < rankInPath(*right);
}

bool isWithin(std::wstring_view path, std::wstring_view directory) {
  if (directory.empty()) return true;
  return path.starts_with(directory) &&
         (path.size() == directory.size() || path[directory.size()] == L'/');
}

ArchiveRecords::Taken ArchiveRecords::add(const ArchiveMember& member) {
  if (records_.size() + hidden_ >= limits_.records || poolBytes_ >= limits_.poolBytes) {
    return Taken::Full;
  }
  if (!name_.take(member)) {
    ++hidden_;
    const std::wstring_view below = name_.safeBeginning();
    if (hiddenBelow_.empty() || hiddenBelow_.back() != below) hiddenBelow_.push_back(keep(below));
    return Taken::Hidden;
  }
  ArchiveRecord record;
  record.directory = directoryOf(name_.directory());
  record.name = keep(name_.name());
  if (!name_.isExact()) record.stored = keep(member.name);
  record.size = member.size;
  record.packed = member.packed;
  record.when = member.when;
  record.attributes = member.attributes;
  record.dotSlash = name_.dotSlash();
  record.foreign = member.foreign;
  record.namedTwice = !member.shown.empty();
  records_.push_back(record);
  size_ = cappedSum(size_, member.size);
  packed_ = cappedSum(packed_, member.packed);
  return Taken::Listed;
}

void ArchiveRecords::clear() {
  pool_.reset();
  poolBytes_ = size_ = packed_ = hidden_ = 0;
  records_.clear();
  order_.clear();
  sizesBefore_.clear();
  directories_.clear();
  known_.clear();
  hiddenBelow_.clear();
  lastDirectory_ = 0;
}

// Members of one directory mostly follow each other.
uint32_t ArchiveRecords::directoryOf(std::wstring_view path) {
  if (lastDirectory_ < directories_.size() && directories_[lastDirectory_].path == path) {
    return lastDirectory_;
  }
  if (const auto found = known_.find(path); found != known_.end()) {
    return lastDirectory_ = found->second;
  }
  lastDirectory_ = static_cast<uint32_t>(directories_.size());
  directories_.push_back({.path = keep(path)});
  known_.emplace(directories_.back().path, lastDirectory_);
  return lastDirectory_;
}

char* ArchiveRecords::room(size_t bytes) {
  // The pool leaves no gaps: sizes of whole characters keep all texts aligned.
  const size_t whole = (bytes + sizeof(wchar_t) - 1) / sizeof(wchar_t) * sizeof(wchar_t);
  void* memory = pool_.allocate(whole);
  if (memory == nullptr) throw std::bad_alloc();
  poolBytes_ += whole;
  return static_cast<char*>(memory);
}

std::wstring_view ArchiveRecords::keep(std::wstring_view text) {
  if (text.empty()) return L"";
  auto* copy = reinterpret_cast<wchar_t*>(room((text.size() + 1) * sizeof(wchar_t)));
  *std::copy(text.begin(), text.end(), copy) = 0;
  return {copy, text.size()};
}

std::string_view ArchiveRecords::keep(std::string_view text) {
  char* copy = room(text.size() + 1);
  *std::copy(text.begin(), text.end(), copy) = 0;
  return {copy, text.size()};
}

void ArchiveRecords::sort() {
  const std::vector<uint32_t> ranks = sortDirectories();
  for (ArchiveRecord& record : records_) {
    record.directory = ranks[record.directory];
    ++directories_[record.directory].recordCount;
  }
  uint32_t first = 0;
  for (ArchiveDirectory& directory : directories_) {
    directory.firstRecord = first;
    first += directory.recordCount;
  }
  sortRecords();
  addUp();
}

// Puts the directories in order; where each of the old ones stands then.
std::vector<uint32_t> ArchiveRecords::sortDirectories() {
  known_.clear();
  std::vector<uint32_t> sorted(directories_.size());
  std::iota(sorted.begin(), sorted.end(), 0);
  std::sort(sorted.begin(), sorted.end(), [this](uint32_t a, uint32_t b) {
    return directoryBefore(directories_[a].path, directories_[b].path);
  });
  std::vector<uint32_t> ranks(sorted.size());
  std::vector<ArchiveDirectory> inOrder;
  inOrder.reserve(sorted.size());
  for (uint32_t i = 0; i < sorted.size(); ++i) {
    ranks[sorted[i]] = i;
    inOrder.push_back(directories_[sorted[i]]);
  }
  directories_ = std::move(inOrder);
  return ranks;
}

// One pass puts each record among those of its directory; these are sorted by themselves.
void ArchiveRecords::sortRecords() {
  std::vector<Keyed> keyed(records_.size());
  std::vector<uint32_t> next;
  next.reserve(directories_.size());
  for (const ArchiveDirectory& directory : directories_) next.push_back(directory.firstRecord);
  for (uint32_t i = 0; i < records_.size(); ++i) keyed[next[records_[i].directory]++].record = i;
  for (const ArchiveDirectory& directory : directories_) {
    sortNames(std::span(keyed).subspan(directory.firstRecord, directory.recordCount));
  }
  order_.resize(keyed.size());
  std::transform(keyed.begin(), keyed.end(), order_.begin(),
                 [](const Keyed& item) { return item.record; });
}

// The records of one directory. Names in it often begin alike: what all share isn't compared.
void ArchiveRecords::sortNames(std::span<Keyed> items) {
  const auto nameOf = [this](const Keyed& item) { return records_[item.record].name; };
  std::wstring_view shared;
  for (const Keyed& item : items) {
    if (nameOf(item).empty()) continue;
    if (shared.empty()) shared = nameOf(item);
    shared = shared.substr(0, likeCharacters(shared, nameOf(item)));
    if (shared.empty()) break;
  }
  for (Keyed& item : items) item.key = orderKey(nameOf(item), shared.size());
  std::sort(items.begin(), items.end(), [&nameOf](const Keyed& a, const Keyed& b) {
    if (a.key != b.key) return a.key < b.key;
    const std::wstring_view left = nameOf(a);
    const std::wstring_view right = nameOf(b);
    return left != right ? nameBefore(left, right) : a.record < b.record;
  });
}

void ArchiveRecords::addUp() {
  SizeSum sum;
  sizesBefore_.assign(1, sum);
  for (const ArchiveDirectory& directory : directories_) {
    for (uint32_t i = 0; i < directory.recordCount; ++i) {
      const uint64_t size = at(directory.firstRecord + i).size;
      sum.high += size >> HalfBits;
      sum.low += size & LowHalf;
    }
    sizesBefore_.push_back(sum);
  }
}

uint32_t ArchiveRecords::placeOf(std::wstring_view path) const {
  const auto place = std::lower_bound(directories_.begin(), directories_.end(), path,
                                      [](const ArchiveDirectory& directory, std::wstring_view to) {
                                        return directoryBefore(directory.path, to);
                                      });
  return static_cast<uint32_t>(place - directories_.begin());
}

// Most directories hold few others: the steps grow from the first on.
uint32_t ArchiveRecords::placeBehind(std::wstring_view path, uint32_t first) const {
  const auto count = static_cast<uint32_t>(directories_.size());
  uint32_t inside = first;
  uint32_t step = 1;
  while (step < count - inside && isWithin(directories_[inside + step].path, path)) {
    inside += step;
    step *= 2;
  }
  const auto begin = directories_.begin() + inside;
  const auto end = directories_.begin() + std::min(inside + uint64_t{step}, uint64_t{count});
  const auto behind = std::partition_point(begin, end, [path](const ArchiveDirectory& directory) {
    return isWithin(directory.path, path);
  });
  return static_cast<uint32_t>(behind - directories_.begin());
}

uint64_t ArchiveRecords::sizeBelow(std::wstring_view path) const {
  const uint32_t first = placeOf(path);
  if (first == directories_.size() || !isWithin(directories_[first].path, path)) return 0;
  const SizeSum& before = sizesBefore_[first];
  const SizeSum& behind = sizesBefore_[placeBehind(path, first)];
  const uint64_t low = behind.low - before.low;
  const uint64_t high = behind.high - before.high + (low >> HalfBits);
  return high > LargestSum >> HalfBits ? LargestSum : high << HalfBits | (low & LowHalf);
}

bool ArchiveRecords::hidesBelow(std::wstring_view path) const {
  return std::any_of(hiddenBelow_.begin(), hiddenBelow_.end(),
                     [path](std::wstring_view place) { return isWithin(place, path); });
}

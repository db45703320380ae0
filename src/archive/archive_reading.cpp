#include "archive/archive_reading.h"

#include <algorithm>

namespace {
constexpr uint32_t StepsBetweenLooks = 1024;
}

HeaderBytes ArchiveReading::wholeHeader(uint64_t position, size_t count) {
  const std::string_view found = bytes_.at(position, count);
  if (found.size() == count) return HeaderBytes(found);
  if (!found.empty() || bytes_.error() != 0) tell(ArchiveNote::Damaged);
  return HeaderBytes({});
}

bool ArchiveReading::goesOn() {
  if (++steps_ % StepsBetweenLooks == 0 && watcher_.stopped()) stopped_ = true;
  return !stopped_;
}

bool ArchiveReading::add(const ArchiveMember& member) {
  if (records_.add(member) == ArchiveRecords::Taken::Full) {
    tell(ArchiveNote::TooManyNames);
    return false;
  }
  ++taken_;
  watcher_.records.fetch_add(1, std::memory_order_relaxed);
  return goesOn();
}

bool ArchiveReading::advance(uint64_t& position, uint64_t bytes) {
  if (!goesOn()) return false;
  if (bytes == 0 || position > size() || bytes > size() - position) {
    tell(ArchiveNote::Damaged);
    return false;
  }
  position += bytes;
  return true;
}

void ArchiveReading::tell(ArchiveNote note) {
  const bool told = std::any_of(messages_.begin(), messages_.end(),
                                [note](const ArchiveMessage& old) { return old.note == note; });
  if (!told) messages_.push_back({note});
}

void ArchiveReading::startAgain() {
  records_.clear();
  // What is no archive of a format isn't a damaged one either.
  std::erase_if(messages_,
                [](const ArchiveMessage& message) { return message.note == ArchiveNote::Damaged; });
  taken_ = 0;
  watcher_.records.store(0, std::memory_order_relaxed);
}

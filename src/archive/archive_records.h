#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "archive/archive_member.h"
#include "archive/member_name.h"
#include "foundation/memory_pool.h"

// One member as it is listed. The texts belong to the records.
struct ArchiveRecord {
  std::wstring_view name;   // "" for a directory; a NUL stands behind it
  std::string_view stored;  // the bytes of the whole path where the shown one doesn't give them
  uint64_t size = 0;        // bytes
  uint64_t packed = 0;
  uint32_t directory = 0;  // of ArchiveRecords::directories
  DosTime when;
  uint16_t attributes = 0;
  bool dotSlash = false;    // "./" stood before the path
  bool foreign = false;     // made on a system whose names the tools translate
  bool namedTwice = false;  // the shown path stands in the archive beside the stored one
};

// A directory that a record names, or lies in.
struct ArchiveDirectory {
  std::wstring_view path;    // without slashes at its ends
  uint32_t firstRecord = 0;  // of the order; so many are its own
  uint32_t recordCount = 0;
};

// What is in an archive: filled by a reader, then put in order once. Directories are sorted with
// '/' below every other character, so that all that lies below one follows it; the records of one
// by name without regard to case, then exactly, then as they stand in the archive.
class ArchiveRecords {
 public:
  // What they take at the most.
  struct Limits {
    uint64_t records = 10'000'000;
    uint64_t poolBytes = uint64_t{1} << 30;  // of texts
  };

  ArchiveRecords() = default;
  explicit ArchiveRecords(const Limits& limits) : limits_(limits) {}

  enum class Taken : uint8_t { Listed, Hidden, Full };
  Taken add(const ArchiveMember& member);
  void clear();
  void sort();

  // After sort():
  uint32_t count() const { return static_cast<uint32_t>(order_.size()); }
  const ArchiveRecord& at(uint32_t place) const { return records_[order_[place]]; }
  const std::vector<ArchiveDirectory>& directories() const { return directories_; }
  // The first directory that isn't before `path`.
  uint32_t placeOf(std::wstring_view path) const;
  // The first one behind `first` and all that lies below `path`; `first` is `path` or lies below.
  uint32_t placeBehind(std::wstring_view path, uint32_t first) const;
  // The bytes of all files in and below a directory, at most 2^63-1.
  uint64_t sizeBelow(std::wstring_view path) const;
  uint64_t size() const { return size_; }      // of all, at most 2^63-1
  uint64_t packed() const { return packed_; }  // of all, at most 2^63-1

  // How many names can't be shown, and whether one of them begins with this directory.
  uint64_t hiddenCount() const { return hidden_; }
  bool hidesBelow(std::wstring_view path) const;

 private:
  // Sizes added up, their halves by themselves so that none overflows.
  struct SizeSum {
    uint64_t high = 0;
    uint64_t low = 0;
  };

  struct Keyed {
    uint64_t key;
    uint32_t record;
  };

  uint32_t directoryOf(std::wstring_view path);
  std::wstring_view keep(std::wstring_view text);
  std::string_view keep(std::string_view text);
  char* room(size_t bytes);
  std::vector<uint32_t> sortDirectories();
  void sortRecords();
  void sortNames(std::span<Keyed> items);
  void addUp();

  Limits limits_;
  MemoryPool pool_;
  uint64_t poolBytes_ = 0;
  MemberName name_;
  std::vector<ArchiveRecord> records_;  // as they stand in the archive
  std::vector<uint32_t> order_;
  std::vector<ArchiveDirectory> directories_;
  std::vector<SizeSum> sizesBefore_;  // of each directory; one more than there are
  std::unordered_map<std::wstring_view, uint32_t> known_;  // directories by path, while adding
  uint32_t lastDirectory_ = 0;
  uint64_t size_ = 0;
  uint64_t packed_ = 0;
  uint64_t hidden_ = 0;
  std::vector<std::wstring_view> hiddenBelow_;
};

// The order of directories: '/' is below every other character.
bool directoryBefore(std::wstring_view a, std::wstring_view b);
// Whether `path` is `directory` or lies below it; everything lies below "".
bool isWithin(std::wstring_view path, std::wstring_view directory);

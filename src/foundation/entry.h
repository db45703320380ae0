#pragma once

#include <cstdint>
#include <memory>

#include "foundation/object_store.h"

namespace Attribute {
inline constexpr uint16_t Directory = 1;
inline constexpr uint16_t ReadOnly = 2;
inline constexpr uint16_t Hidden = 8;
inline constexpr uint16_t Link = 32;  // reached through a symbolic link
}  // namespace Attribute

namespace SortGroup {
inline constexpr unsigned char Parent = '1';
inline constexpr unsigned char Directory = 'A';
inline constexpr unsigned char HiddenFile = 'B';
inline constexpr unsigned char File = 'C';
}  // namespace SortGroup

// One line of every listing. A variable-length block: the name stands behind the fields. Made by
// newEntry, freed by freeEntry.
struct entry {
  uint64_t size;        // bytes; 0 for a directory unless a total was counted
  int64_t total;        // -1 until set
  uint32_t owner;       // user id
  uint32_t group;       // group id
  uint16_t attributes;  // Attribute bits
  uint16_t mode;        // low 16 bits of st_mode
  uint16_t time;        // DOS time word
  uint16_t date;        // DOS date word
  uint8_t tagged;       // 1 when tagged
  uint8_t wasTagged;    // 1 when a macro or an operation used the tag
  uint8_t level;        // 1: `size` of a directory holds a counted total
  uint8_t sortGroup;    // SortGroup

  wchar_t* name() { return reinterpret_cast<wchar_t*>(this + 1); }
  const wchar_t* name() const { return reinterpret_cast<const wchar_t*>(this + 1); }
  bool isDirectory() const { return attributes & Attribute::Directory; }
  bool isLink() const { return attributes & Attribute::Link; }
  bool isHidden() const { return attributes & Attribute::Hidden; }
};

// A block with all fields 0 (total -1) and room for a name of `nameLength` characters.
entry* newEntry(int nameLength);
entry* newEntry(const wchar_t* name);
entry* copyEntry(const entry* source);
void freeEntry(entry* item);

struct EntryDeleter {
  void operator()(entry* item) const { freeEntry(item); }
};
using EntryPtr = std::unique_ptr<entry, EntryDeleter>;

class EntryStore : public TObjectStore<entry> {
 public:
  ~EntryStore() override { clear(); }

 protected:
  void deleteEntry(entry* item) override { ::freeEntry(item); }
};

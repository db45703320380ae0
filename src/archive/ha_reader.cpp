#include <algorithm>
#include <optional>
#include <string>

#include "archive/archive_readers.h"

// No archive of this format made by its own packer was at hand: what is here follows the two
// descriptions of it and is tested with archives made by them.

namespace {

constexpr std::string_view Signature("HA");
constexpr size_t ArchiveHeader = 4;
constexpr size_t NarrowHeader = 17;
constexpr size_t WideHeader = 29;
constexpr size_t LongestText = 300;
constexpr uint8_t LatestVersion = 2;
constexpr uint8_t DirectoryType = 14;
constexpr uint8_t SpecialType = 15;
constexpr char Separator = '\xFF';

// What stands in front of a member's data.
struct MemberHeader {
  std::string path;
  std::string name;
  uint64_t length = 0;  // bytes up to the data
};

int versionOf(const HeaderBytes& header) {
  return header.u8(0) >> 4;
}

int typeOf(const HeaderBytes& header) {
  return header.u8(0) & 15;
}

// Two forms of headers are in use; which one it is shows in each of them: by a time where the other
// one has the upper half of the size.
bool isNarrow(const HeaderBytes& header) {
  return header.u32(13) != 0;
}

// Reads the two texts behind the fixed fields and what the machine added; nothing when they don't
// end.
std::optional<MemberHeader> readTexts(ArchiveReading& reading, uint64_t position, size_t fixed) {
  const std::string_view rest = reading.bytes(position + fixed, 2 * LongestText + 1);
  const size_t pathEnd = rest.substr(0, LongestText).find('\0');
  if (pathEnd == std::string_view::npos) return std::nullopt;
  const size_t nameLength = rest.substr(pathEnd + 1, LongestText).find('\0');
  const size_t nameEnd = pathEnd + 1 + nameLength;
  if (nameLength == std::string_view::npos || nameEnd + 1 >= rest.size()) return std::nullopt;
  MemberHeader header;
  header.path = rest.substr(0, pathEnd);
  header.name = rest.substr(pathEnd + 1, nameLength);
  const auto machineBytes = static_cast<unsigned char>(rest[nameEnd + 1]);
  header.length = fixed + nameEnd + 2 + machineBytes;
  std::replace(header.path.begin(), header.path.end(), Separator, '/');
  if (header.path.ends_with('/')) header.path.pop_back();
  return header;
}

bool isArchive(ArchiveReading& reading) {
  const HeaderBytes head = reading.header(0, ArchiveHeader);
  if (head.size() < ArchiveHeader || !head.holds(0, Signature)) return false;
  if (reading.size() == ArchiveHeader) return head.u16(2) == 0;
  const HeaderBytes first = reading.header(ArchiveHeader, WideHeader);
  const int type = typeOf(first);
  const bool known = type <= 2 || type == DirectoryType || type == SpecialType;
  return versionOf(first) == LatestVersion && known &&
         readTexts(reading, ArchiveHeader, isNarrow(first) ? NarrowHeader : WideHeader);
}

bool readMember(ArchiveReading& reading, uint64_t& position) {
  const HeaderBytes fixed = reading.header(position, WideHeader);
  if (fixed.size() == 0 || versionOf(fixed) > LatestVersion) return false;
  const bool narrow = isNarrow(fixed);
  ArchiveMember member;
  member.packed = narrow ? fixed.u32(1) : fixed.u64(1);
  member.size = narrow ? fixed.u32(5) : fixed.u64(9);
  member.when =
      narrow ? timeToDos(fixed.u32(13)) : DosTime{.date = fixed.u16(27), .time = fixed.u16(25)};
  if (typeOf(fixed) == DirectoryType) member.kind = MemberKind::Directory;
  const auto header = readTexts(reading, position, narrow ? NarrowHeader : WideHeader);
  if (!header) {
    reading.tell(ArchiveNote::Damaged);
    return false;
  }
  std::string path = header->path;
  if (!path.empty() && !header->name.empty()) path += '/';
  path += header->name;
  member.name = path;
  return reading.add(member) && reading.advance(position, header->length) &&
         (member.packed == 0 || reading.advance(position, member.packed));
}

}  // namespace

bool readHa(ArchiveReading& reading) {
  if (!isArchive(reading)) return false;
  uint64_t position = ArchiveHeader;
  while (position < reading.size() && readMember(reading, position)) {
  }
  return true;
}

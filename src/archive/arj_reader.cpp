#include <optional>

#include "archive/archive_readers.h"
#include "archive/signature_scan.h"

namespace {

constexpr std::string_view Signature("\x60\xEA");
constexpr size_t SignatureSize = 2;
constexpr uint64_t ScanBegin = 4;
constexpr uint64_t ScanEnd = 0x20000;

constexpr size_t HeadSize = 4;
constexpr size_t SumSize = 4;
constexpr size_t CheckedSize = 47;  // of a candidate for the main header
constexpr size_t LargestMainHeader = 2600;
constexpr size_t LargestFirstHeader = 40;
constexpr size_t LargestHeader = 8188;  // and above: no header
constexpr size_t FirstHeaderOffset = 4;
constexpr size_t FileTypeOffset = 10;

constexpr size_t HostOffset = 7;
constexpr uint8_t UnixHost = 2;
enum FileType : uint8_t { MainHeader = 2, DirectoryMember = 3, Label = 4 };

bool isMainHeader(const HeaderBytes& header) {
  const uint8_t firstHeader = header.u8(FirstHeaderOffset);
  return header.size() == CheckedSize && header.u16(2) <= LargestMainHeader &&
         firstHeader <= LargestFirstHeader && header.u8(FileTypeOffset) == MainHeader;
}

std::optional<uint64_t> findStart(ArchiveReading& reading) {
  if (reading.header(0, HeadSize).holds(0, Signature)) return 0;
  for (uint64_t from = ScanBegin;;) {
    const auto found = findInProgram(reading, Signature, from, ScanEnd);
    if (!found || isMainHeader(reading.header(*found, CheckedSize))) return found;
    from = *found + SignatureSize;
  }
}

// Two forms of headers are in use; which one it is shows in each of them.
ArchiveMember memberOf(const HeaderBytes& header) {
  ArchiveMember member;
  member.packed = header.u32(16);
  member.size = header.u32(20);
  const bool wide = member.size == 0 && member.packed != 0;
  if (wide) {
    member.packed = header.u64(16);
    member.size = header.u64(24);
  }
  // Packers of Unix have a time of their own in the place of the two words.
  member.when = !wide && header.u8(HostOffset) == UnixHost
                    ? timeToDos(header.u32(12))
                    : DosTime{.date = header.u16(14), .time = header.u16(12)};
  if (header.u8(FileTypeOffset) == DirectoryMember) member.kind = MemberKind::Directory;
  member.name = header.ended(FirstHeaderOffset + header.u8(FirstHeaderOffset), header.size());
  return member;
}

// Goes over the extended headers, up to the data.
bool skipExtended(ArchiveReading& reading, uint64_t& position) {
  for (;;) {
    const HeaderBytes size = reading.wholeHeader(position, sizeof(uint16_t));
    if (size.size() == 0 || !reading.advance(position, sizeof(uint16_t))) return false;
    if (size.u16(0) == 0) return true;
    if (!reading.advance(position, size.u16(0) + SumSize)) return false;
  }
}

bool readMember(ArchiveReading& reading, uint64_t& position) {
  const HeaderBytes head = reading.wholeHeader(position, HeadSize);
  const size_t size = head.u16(2);
  if (head.size() == 0 || size == 0) return false;
  if (size >= LargestHeader || !head.holds(0, Signature)) {
    reading.tell(ArchiveNote::Damaged);
    return false;
  }
  const HeaderBytes header = reading.wholeHeader(position, HeadSize + size);
  if (header.size() == 0) return false;
  const uint8_t type = header.u8(FileTypeOffset);
  const ArchiveMember member = memberOf(header);
  if (type != MainHeader && type != Label && !reading.add(member)) return false;
  return reading.advance(position, HeadSize + size + SumSize) && skipExtended(reading, position) &&
         (member.packed == 0 || reading.advance(position, member.packed));
}

}  // namespace

bool readArj(ArchiveReading& reading) {
  const std::optional<uint64_t> start = findStart(reading);
  if (!start) return false;
  uint64_t position = *start;
  const size_t mainSize = reading.header(position, HeadSize).u16(2);
  if (!reading.advance(position, HeadSize + mainSize + SumSize + sizeof(uint16_t))) return false;
  while (readMember(reading, position)) {
  }
  return reading.recordCount() > 0;
}

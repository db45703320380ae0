#include <optional>

#include "archive/archive_readers.h"
#include "archive/rar5_reader.h"
#include "archive/signature_scan.h"
#include "foundation/entry.h"

namespace {

constexpr std::string_view Marker("Rar!\x1a\7\0", 7);
constexpr std::string_view Marker5("Rar!\x1a\7\1\0", 8);
constexpr uint64_t ScanBegin = 7;
constexpr uint64_t ScanEnd = 0x20000;

constexpr size_t BlockHead = 7;
constexpr size_t LargestFileHeader = 8192;
constexpr uint8_t MainBlock = 0x73;
constexpr uint8_t FileBlock = 0x74;
constexpr uint8_t EndBlock = 0x7B;

constexpr uint16_t HasData = 0x8000;         // of any block
constexpr uint16_t EncryptedHeaders = 0x80;  // of the main block
constexpr uint16_t Comment = 0x08;           // these are of file blocks
constexpr uint16_t HighSizes = 0x100;
constexpr uint16_t Salt = 0x400;
constexpr uint16_t Times = 0x1000;
constexpr uint16_t DirectoryBits = 0xE0;
constexpr size_t HighSizesBytes = 8;
constexpr size_t SaltBytes = 8;
constexpr size_t LongestTail = 40;  // of a comment or more times
constexpr uint8_t DosHosts = 3;     // hosts below have attributes of DOS
constexpr int HalfBits = 32;

// Two forms of file headers are in use; an archive keeps to the one that its first file shows.
struct FileLayout {
  size_t size;  // offsets
  size_t host;
  size_t time;
  size_t date;
  size_t nameLength;
  size_t attributes;
  size_t end;  // of the fixed fields
  bool wide;   // sizes have eight bytes
};
constexpr FileLayout Narrow{11, 15, 20, 22, 26, 28, 32, false};
constexpr FileLayout Wide{15, 23, 32, 34, 38, 40, 48, true};
constexpr size_t PackedOffset = 7;
constexpr size_t MethodOffset = 25;
constexpr uint8_t FirstMethod = 0x30;
constexpr uint8_t LastMethod = 0x35;

size_t nameOffset(const FileLayout& layout, uint16_t flags) {
  return layout.end + ((flags & HighSizes) != 0 ? HighSizesBytes : 0);
}

const FileLayout* layoutOf(const HeaderBytes& header) {
  const uint16_t flags = header.u16(3);
  const uint8_t method = header.u8(MethodOffset);
  const size_t narrow = nameOffset(Narrow, flags) + header.u16(Narrow.nameLength) +
                        ((flags & Salt) != 0 ? SaltBytes : 0);
  const size_t tail = (flags & (Comment | Times)) != 0 ? LongestTail : 0;
  if (method >= FirstMethod && method <= LastMethod && narrow <= header.size() &&
      header.size() <= narrow + tail) {
    return &Narrow;
  }
  const size_t wide = nameOffset(Wide, flags) + header.u16(Wide.nameLength);
  return wide == header.size() ? &Wide : nullptr;
}

ArchiveMember memberOf(const HeaderBytes& header, const FileLayout& layout) {
  const uint16_t flags = header.u16(3);
  ArchiveMember member;
  member.packed = layout.wide ? header.u64(PackedOffset) : header.u32(PackedOffset);
  member.size = layout.wide ? header.u64(layout.size) : header.u32(layout.size);
  if ((flags & HighSizes) != 0) {
    member.packed += uint64_t{header.u32(layout.end)} << HalfBits;
    if (!layout.wide) member.size += uint64_t{header.u32(layout.end + 4)} << HalfBits;
  }
  member.when = {.date = header.u16(layout.date), .time = header.u16(layout.time)};
  // Bit 0, which DOS has for files that are read only, would make a directory of a file here.
  if (header.u8(layout.host) < DosHosts) {
    member.attributes = header.u8(layout.attributes) & Attribute::Hidden;
  }
  if ((flags & DirectoryBits) == DirectoryBits) member.kind = MemberKind::Directory;
  member.name = header.ended(nameOffset(layout, flags), header.u16(layout.nameLength));
  return member;
}

class RarReader {
 public:
  RarReader(ArchiveReading& reading, uint64_t start) : reading_(reading), position_(start) {}

  bool read() {
    if (!reading_.advance(position_, reading_.header(position_, BlockHead).u16(5))) return false;
    const HeaderBytes main = reading_.header(position_, BlockHead);
    if (main.u8(2) != MainBlock) return false;
    if ((main.u16(3) & EncryptedHeaders) != 0) {
      reading_.tell(ArchiveNote::HeadersEncrypted);
      return true;
    }
    while (!failed_ && readBlock()) {
    }
    return !failed_ || reading_.recordCount() > 0;
  }

 private:
  bool readBlock();
  bool readFile(size_t size);
  bool fail() {
    reading_.tell(ArchiveNote::RarHeader);
    failed_ = true;
    return false;
  }

  ArchiveReading& reading_;
  uint64_t position_;
  const FileLayout* layout_ = nullptr;
  bool failed_ = false;
};

bool RarReader::readBlock() {
  const HeaderBytes head = reading_.wholeHeader(position_, BlockHead);
  if (head.size() == 0) return false;
  const uint8_t type = head.u8(2);
  const bool hasData = (head.u16(3) & HasData) != 0;
  const size_t size = head.u16(5);
  if (size < BlockHead) return fail();
  if (type == EndBlock) return false;
  if (type == FileBlock) return readFile(size);
  const uint64_t data = hasData ? reading_.header(position_, size).u32(PackedOffset) : 0;
  return reading_.advance(position_, size + data);
}

bool RarReader::readFile(size_t size) {
  if (size > LargestFileHeader) return fail();
  const HeaderBytes header = reading_.wholeHeader(position_, size);
  if (header.size() == 0) return false;
  if (layout_ == nullptr) layout_ = layoutOf(header);
  if (layout_ == nullptr) return fail();
  const ArchiveMember member = memberOf(header, *layout_);
  const bool hasData = (header.u16(3) & HasData) != 0;
  return reading_.add(member) && reading_.advance(position_, size) &&
         (!hasData || member.packed == 0 || reading_.advance(position_, member.packed));
}

}  // namespace

bool readRar(ArchiveReading& reading) {
  if (reading.header(0, Marker.size()).holds(0, Marker)) return RarReader(reading, 0).read();
  if (reading.header(0, Marker5.size()).holds(0, Marker5)) {
    return readRar5(reading, Marker5.size());
  }
  if (const auto start = findInProgram(reading, Marker, ScanBegin, ScanEnd)) {
    return RarReader(reading, *start).read();
  }
  if (const auto start = findInProgram(reading, Marker5, ScanBegin, ScanEnd)) {
    return readRar5(reading, *start + Marker5.size());
  }
  return false;
}

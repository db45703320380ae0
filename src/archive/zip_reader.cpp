#include <algorithm>
#include <optional>

#include "archive/archive_readers.h"
#include "archive/crc32.h"
#include "archive/signature_scan.h"
#include "foundation/utf8.h"

namespace {

constexpr std::string_view LocalSignature("PK\3\4");
constexpr std::string_view CentralSignature("PK\1\2");
constexpr std::string_view EndSignature("PK\5\6");
constexpr std::string_view Locator64Signature("PK\6\7");
constexpr std::string_view End64Signature("PK\6\6");
constexpr std::string_view DirectorySumSignature("PK\5\5");
constexpr size_t SignatureSize = 4;

constexpr size_t EndSize = 22;
constexpr size_t Locator64Size = 20;
constexpr size_t End64Size = 56;
constexpr size_t CentralSize = 46;
constexpr uint64_t EndPositions = 65557;  // the longest comment and the record before it
constexpr size_t LongestName = 8191;
constexpr uint32_t In64Bits = 0xFFFFFFFF;
constexpr uint64_t ScanBegin = 8;
constexpr uint64_t ScanEnd = 0x20000;

constexpr uint16_t Utf8Flag = 0x800;
constexpr uint8_t UnixHost = 3;
constexpr uint16_t Sizes64Block = 1;
constexpr uint16_t UnicodeNameBlock = 0x7075;
constexpr size_t BlockHead = 4;

// Where the central directory lies.
struct Directory {
  uint64_t begin = 0;
  uint64_t end = 0;
  uint64_t size = 0;  // as the end record says
};

// The end record's place: the one whose comment reaches exactly to the end of the file, else the
// last.
std::optional<uint64_t> findEndRecord(ArchiveReading& reading) {
  const uint64_t from = reading.size() - std::min(reading.size(), EndPositions);
  const std::string_view tail = reading.bytes(from, EndPositions);
  std::optional<uint64_t> last;
  for (size_t place = tail.rfind(EndSignature); place != std::string_view::npos;
       place = place == 0 ? std::string_view::npos : tail.rfind(EndSignature, place - 1)) {
    if (!last) last = from + place;
    const HeaderBytes record(tail.substr(place));
    if (record.size() >= EndSize && record.u16(20) == record.size() - EndSize) return from + place;
  }
  return last;
}

// Takes the large record's place of the directory where there is such a record before `end`.
void takeLargeEnd(ArchiveReading& reading, uint64_t endRecord, Directory& directory) {
  if (endRecord < Locator64Size) return;
  const HeaderBytes locator = reading.header(endRecord - Locator64Size, Locator64Size);
  if (!locator.holds(0, Locator64Signature)) return;
  const uint64_t place = locator.u64(8);
  const HeaderBytes record = reading.header(place, End64Size);
  if (record.size() < End64Size || !record.holds(0, End64Signature)) return;
  directory.end = place;
  directory.size = record.u64(40);
  if (directory.begin == In64Bits) directory.begin = record.u64(48);
}

bool standsAt(ArchiveReading& reading, uint64_t position) {
  return reading.bytes(position, SignatureSize) == CentralSignature;
}

// The first header's place: as stored, behind the program that unpacks the archive, or where the
// directory's size leads back to from its end. Nothing after a message, if one is due.
std::optional<uint64_t> findFirstHeader(ArchiveReading& reading, const Directory& directory,
                                        uint64_t stub) {
  if (standsAt(reading, directory.begin)) return directory.begin;
  if (directory.begin <= reading.size() && standsAt(reading, directory.begin + stub)) {
    return directory.begin + stub;
  }
  if (directory.size <= directory.end && standsAt(reading, directory.end - directory.size)) {
    return directory.end - directory.size;
  }
  if (stub == 0) reading.tell(ArchiveNote::ZipBadDirectory);
  return std::nullopt;
}

// A header of the central directory, and what its extra blocks change.
class CentralHeader {
 public:
  // `header`: all of it.
  CentralHeader(const HeaderBytes& header, size_t nameLength) {
    const uint16_t flags = header.u16(8);
    member_.name = header.text(CentralSize, nameLength);
    member_.packed = header.u32(20);
    member_.size = header.u32(24);
    member_.when = {.date = header.u16(14), .time = header.u16(12)};
    member_.foreign = header.u8(5) != UnixHost;
    // A name whose bytes are UTF-8 is taken as such; else only the first packers had a page.
    if ((flags & Utf8Flag) == 0 && member_.foreign && !isUtf8(member_.name)) {
      member_.form = NameForm::Page437;
    }
    takeBlocks(header.text(CentralSize + nameLength, header.u16(30)));
  }

  const ArchiveMember& member() const { return member_; }

 private:
  static bool isUtf8(std::string_view name);
  void takeBlocks(std::string_view extra);
  void takeSizes(const HeaderBytes& block);
  void takeName(const HeaderBytes& block);

  ArchiveMember member_;
};

bool CentralHeader::isUtf8(std::string_view name) {
  constexpr unsigned char FirstBeyondAscii = 0x80;
  while (!name.empty()) {
    size_t length = 1;
    if (static_cast<unsigned char>(name[0]) >= FirstBeyondAscii) {
      wchar_t character = 0;
      length = decodeExactCharacter(name, character);
      if (character < 0) return false;
    }
    name.remove_prefix(length);
  }
  return true;
}

void CentralHeader::takeBlocks(std::string_view extra) {
  while (extra.size() >= BlockHead) {
    const HeaderBytes head(extra);
    const HeaderBytes block(extra.substr(BlockHead, head.u16(2)));
    if (head.u16(0) == Sizes64Block) takeSizes(block);
    if (head.u16(0) == UnicodeNameBlock) takeName(block);
    extra.remove_prefix(std::min(extra.size(), BlockHead + head.u16(2)));
  }
}

// Only what doesn't fit into the header stands in the block.
void CentralHeader::takeSizes(const HeaderBytes& block) {
  size_t offset = 0;
  for (uint64_t* field : {&member_.size, &member_.packed}) {
    if (*field != In64Bits || block.size() < offset + sizeof(uint64_t)) continue;
    *field = block.u64(offset);
    offset += sizeof(uint64_t);
  }
}

// The name in UTF-8, if it belongs to the name in the header.
void CentralHeader::takeName(const HeaderBytes& block) {
  constexpr size_t NameOffset = 5;
  if (block.size() <= NameOffset || block.u8(0) != 1 || block.u32(1) != crc32(member_.name)) return;
  member_.shown = block.text(NameOffset, block.size());
  member_.form = NameForm::FileName;
}

// Whether the list goes on behind the header at `position`.
bool readHeader(ArchiveReading& reading, uint64_t& position) {
  const HeaderBytes head = reading.wholeHeader(position, CentralSize);
  if (head.size() == 0) return false;
  if (!head.holds(0, CentralSignature)) {
    const bool ended = head.holds(0, End64Signature) || head.holds(0, Locator64Signature) ||
                       head.holds(0, EndSignature) || head.holds(0, DirectorySumSignature);
    if (!ended) reading.tell(ArchiveNote::ZipBadDirectory);
    return false;
  }
  const size_t nameLength = head.u16(28);
  const size_t comment = head.u16(32);
  const size_t length = CentralSize + nameLength + head.u16(30);
  if (nameLength > LongestName) {
    reading.tell(ArchiveNote::ZipListUnreadable);
    return false;
  }
  const HeaderBytes whole = reading.wholeHeader(position, length);
  if (whole.size() == 0) return false;
  return reading.add(CentralHeader(whole, nameLength).member()) &&
         reading.advance(position, length + comment);
}

// Where the archive begins behind a program; nothing when this is no ZIP.
std::optional<uint64_t> findStart(ArchiveReading& reading) {
  const HeaderBytes head = reading.header(0, ScanBegin);
  // The second place is that of an archive with a marker before it.
  if (head.holds(0, LocalSignature) || head.holds(0, EndSignature) ||
      head.holds(SignatureSize, LocalSignature)) {
    return 0;
  }
  return findInProgram(reading, LocalSignature, ScanBegin, ScanEnd);
}

}  // namespace

bool readZip(ArchiveReading& reading) {
  const std::optional<uint64_t> stub = findStart(reading);
  if (!stub) return false;
  const std::optional<uint64_t> endRecord = findEndRecord(reading);
  if (!endRecord) {
    reading.tell(ArchiveNote::NoCentralDirectory);
    return false;
  }
  const HeaderBytes record = reading.header(*endRecord, EndSize);
  if (record.size() < EndSize) {
    reading.tell(ArchiveNote::ZipListUnreadable);
    return false;
  }
  Directory directory{.begin = record.u32(16), .end = *endRecord, .size = record.u32(12)};
  takeLargeEnd(reading, *endRecord, directory);
  if (directory.begin >= reading.size()) {
    reading.tell(ArchiveNote::ZipNonsenseHeader);
    return false;
  }
  if (directory.begin >= directory.end) return true;
  const std::optional<uint64_t> first = findFirstHeader(reading, directory, *stub);
  if (!first) return false;
  uint64_t position = *first;
  while (position < directory.end && readHeader(reading, position)) {
  }
  return reading.recordCount() > 0 || reading.stopped();
}

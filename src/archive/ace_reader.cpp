#include <optional>

#include "archive/archive_readers.h"
#include "archive/signature_scan.h"

namespace {

constexpr std::string_view Signature("**ACE**");
constexpr size_t SignatureOffset = 7;
constexpr uint64_t ScanEnd = 65536;

constexpr size_t HeadSize = 4;
constexpr size_t LargestHeader = 8188;
constexpr size_t TypeOffset = 4;
constexpr size_t FlagsOffset = 5;
constexpr size_t PackedOffset = 7;

enum BlockType : uint8_t { MainBlock = 0, FileBlock = 1 };
constexpr uint16_t HasData = 1;
constexpr uint16_t HasComment = 2;

// Two forms of file headers are in use; an archive keeps to the one that its first file shows.
struct FileLayout {
  size_t size;  // offsets
  size_t time;
  size_t date;
  size_t attributes;
  size_t nameLength;
  size_t name;
  uint8_t directory;  // the bit of the attributes
  bool wide;          // sizes have eight bytes
};
constexpr FileLayout Narrow{11, 15, 17, 19, 33, 35, 0x10, false};
constexpr FileLayout Wide{15, 23, 25, 27, 53, 55, 0x01, true};

bool fits(const HeaderBytes& block, const FileLayout& layout) {
  const size_t end = layout.name + block.u16(layout.nameLength);
  const bool comment = (block.u16(FlagsOffset) & HasComment) != 0;
  return comment ? end <= block.size() : end == block.size();
}

const FileLayout* layoutOf(const HeaderBytes& block) {
  if (fits(block, Narrow)) return &Narrow;
  return fits(block, Wide) ? &Wide : nullptr;
}

ArchiveMember memberOf(const HeaderBytes& block, const FileLayout& layout) {
  ArchiveMember member;
  member.packed = layout.wide ? block.u64(PackedOffset) : block.u32(PackedOffset);
  member.size = layout.wide ? block.u64(layout.size) : block.u32(layout.size);
  member.when = {.date = block.u16(layout.date), .time = block.u16(layout.time)};
  if ((block.u8(layout.attributes) & layout.directory) != 0) member.kind = MemberKind::Directory;
  member.name = block.ended(layout.name, block.u16(layout.nameLength));
  return member;
}

// The block at `position`; empty when there is none.
HeaderBytes blockAt(ArchiveReading& reading, uint64_t position) {
  const HeaderBytes head = reading.wholeHeader(position, HeadSize);
  if (head.size() == 0) return head;
  const size_t size = head.u16(2);
  if (size <= TypeOffset - HeadSize || size > LargestHeader) {
    reading.tell(ArchiveNote::Damaged);
    return HeaderBytes({});
  }
  return reading.wholeHeader(position, HeadSize + size);
}

uint64_t dataOf(const HeaderBytes& block) {
  return (block.u16(FlagsOffset) & HasData) != 0 ? block.u32(PackedOffset) : 0;
}

std::optional<uint64_t> findStart(ArchiveReading& reading) {
  const HeaderBytes head = reading.header(0, SignatureOffset + Signature.size());
  if (head.holds(SignatureOffset, Signature)) return 0;
  const auto found = findInProgram(reading, Signature, HeadSize + head.u16(2), ScanEnd);
  if (!found || *found < SignatureOffset) return std::nullopt;
  return *found - SignatureOffset;
}

class AceReader {
 public:
  AceReader(ArchiveReading& reading, uint64_t start) : reading_(reading), position_(start) {}

  bool read() {
    const HeaderBytes main = blockAt(reading_, position_);
    if (main.size() == 0 || main.u8(TypeOffset) != MainBlock) return false;
    if (!advance(main.size(), dataOf(main))) return false;
    while (readBlock()) {
    }
    return recognised_;
  }

 private:
  bool readBlock();
  bool advance(uint64_t header, uint64_t data) {
    return reading_.advance(position_, header) && (data == 0 || reading_.advance(position_, data));
  }

  ArchiveReading& reading_;
  uint64_t position_;
  const FileLayout* layout_ = nullptr;
  bool recognised_ = true;
};

bool AceReader::readBlock() {
  const HeaderBytes block = blockAt(reading_, position_);
  if (block.size() == 0) return false;
  if (block.u8(TypeOffset) != FileBlock) return advance(block.size(), dataOf(block));
  if (layout_ == nullptr) {
    layout_ = layoutOf(block);
    recognised_ = layout_ != nullptr;
    if (!recognised_) return false;
  }
  const ArchiveMember member = memberOf(block, *layout_);
  const size_t header = block.size();
  return reading_.add(member) && advance(header, member.packed);
}

}  // namespace

bool readAce(ArchiveReading& reading) {
  const std::optional<uint64_t> start = findStart(reading);
  return start && AceReader(reading, *start).read();
}

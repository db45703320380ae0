#include <algorithm>
#include <string>

#include "archive/archive_readers.h"
#include "archive/crc32.h"
#include "foundation/fold.h"
#include "foundation/utf8.h"

namespace {

constexpr std::string_view Signature("\x1f\x8b");
constexpr size_t HeaderSize = 10;
constexpr size_t SizeBytes = 4;
constexpr size_t LongestText = 1025;
constexpr uint32_t LowHalf = 0xFFFF;
enum Flag : uint8_t { HeaderSum = 2, Extra = 4, Name = 8, Comment = 16 };

// What stands behind the fixed fields.
struct Optional {
  std::string name;
  uint64_t end = HeaderSize;  // where they end
};

std::string takeText(ArchiveReading& reading, uint64_t& position) {
  const std::string_view text = reading.bytes(position, LongestText);
  const size_t length = std::min(text.find('\0'), text.size());
  position += std::min(length + 1, text.size());
  return std::string(text.substr(0, length));
}

void takeExtra(ArchiveReading& reading, uint64_t& position) {
  position += sizeof(uint16_t) + reading.header(position, sizeof(uint16_t)).u16(0);
}

// All but the sum, from `position` on.
Optional readFrom(ArchiveReading& reading, uint8_t flags, uint64_t position) {
  Optional found{.name = {}, .end = position};
  if ((flags & Extra) != 0) takeExtra(reading, found.end);
  if ((flags & Name) != 0) found.name = takeText(reading, found.end);
  if ((flags & Comment) != 0) takeText(reading, found.end);
  return found;
}

// Two orders are in use: the sum of the header behind everything else, or before it. That the sum
// fits shows which one it is.
Optional readOptional(ArchiveReading& reading, uint8_t flags) {
  Optional sumLast = readFrom(reading, flags, HeaderSize);
  if ((flags & HeaderSum) == 0) return sumLast;
  if (sumLast.end <= ArchiveBytes::LargestView) {
    const auto length = static_cast<size_t>(sumLast.end);
    const uint32_t sum = crc32(reading.bytes(0, length));
    const HeaderBytes stored = reading.header(length, sizeof(uint16_t));
    if (stored.size() == sizeof(uint16_t) && stored.u16(0) == (sum & LowHalf)) {
      sumLast.end += sizeof(uint16_t);
      return sumLast;
    }
  }
  return readFrom(reading, flags, HeaderSize + sizeof(uint16_t));
}

bool endsInWord(std::wstring_view text, std::wstring_view word) {
  return text.size() >= word.size() &&
         sameWord(std::wstring(text.substr(text.size() - word.size())).c_str(),
                  std::wstring(word).c_str());
}

// The name that the packed file had by that of the archive.
std::string nameByArchive(std::wstring_view archive) {
  constexpr std::wstring_view Gz(L".gz");
  constexpr std::wstring_view Tgz(L".tgz");
  std::wstring name(archive);
  if (endsInWord(archive, Gz)) {
    name.resize(name.size() - Gz.size());
  } else if (endsInWord(archive, Tgz)) {
    name.replace(name.size() - Tgz.size(), Tgz.size(), L".tar");
  }
  return toUtf8(name.c_str()).data();
}

// Only the last component counts; one that is no name doesn't.
std::string nameOf(std::string_view stored, std::wstring_view archive) {
  const size_t slash = stored.find_last_of("/\\");
  if (slash != std::string_view::npos) stored.remove_prefix(slash + 1);
  const bool usable = !stored.empty() && stored != "." && stored != "..";
  return usable ? std::string(stored) : nameByArchive(archive);
}

}  // namespace

bool readGzip(ArchiveReading& reading) {
  const HeaderBytes header = reading.header(0, HeaderSize);
  if (header.size() < HeaderSize || !header.holds(0, Signature)) return false;
  ArchiveMember member;
  const uint8_t flags = header.u8(3);
  member.when = timeToDos(header.u32(4));
  const Optional found = readOptional(reading, flags);
  const std::string name = nameOf(found.name, reading.fileName());
  member.name = name;
  if (found.end + SizeBytes > reading.size()) {
    reading.tell(ArchiveNote::Damaged);
  } else {
    member.packed = reading.size() - found.end;
    member.size = reading.header(reading.size() - SizeBytes, SizeBytes).u32(0);
  }
  reading.add(member);
  return true;
}

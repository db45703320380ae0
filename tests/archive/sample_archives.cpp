#include "archive/sample_archives.h"

#include <cstdio>

#include "archive/crc32.h"

namespace {

std::string number(uint64_t value, size_t bytes) {
  std::string text;
  for (size_t i = 0; i < bytes; ++i, value >>= 8) text += static_cast<char>(value);
  return text;
}

std::string withoutSlash(const SampleMember& member) {
  return member.isDirectory() ? member.path.substr(0, member.path.size() - 1) : member.path;
}

std::string unicodeBlock(const SampleMember& member) {
  if (member.secondName.empty()) return "";
  const std::string block = "\1" + le32(crc32(member.path)) + member.secondName;
  return le16(0x7075) + le16(block.size()) + block;
}

char byteSum(const std::string& bytes) {
  unsigned sum = 0;
  for (const char byte : bytes) sum += static_cast<unsigned char>(byte);
  return static_cast<char>(sum);
}

std::string words() {
  return le16(SampleWords.time) + le16(SampleWords.date);
}

std::string rarBlock(uint8_t type, uint16_t flags, const std::string& fields) {
  const std::string rest =
      std::string(1, static_cast<char>(type)) + le16(flags) + le16(7 + fields.size()) + fields;
  return le16(crc32(rest)) + rest;
}

std::string vint(uint64_t value) {
  std::string text;
  for (; value >= 0x80; value >>= 7) text += static_cast<char>(value | 0x80);
  return text + static_cast<char>(value);
}

std::string rar5Block(const std::string& fields) {
  const std::string sized = vint(fields.size()) + fields;
  return le32(crc32(sized)) + sized;
}

std::string extendedHeader(const std::string& content, size_t sizeBytes) {
  return number(content.size() + sizeBytes, sizeBytes) + content;
}

// Directory and name of a member as extended headers, each with its size in front, the last size 0.
std::string lhaExtended(const SampleMember& member, size_t sizeBytes) {
  const size_t slash = member.path.rfind('/');
  std::string text = extendedHeader(
      "\1" + member.path.substr(slash == std::string::npos ? 0 : slash + 1), sizeBytes);
  if (slash != std::string::npos) {
    std::string directory = member.path.substr(0, slash + 1);
    for (char& c : directory) {
      if (c == '/') c = '\xFF';
    }
    text += extendedHeader("\2" + directory, sizeBytes);
  }
  return text + number(0, sizeBytes);
}

std::string lhaMethod(const SampleMember& member) {
  return member.isDirectory() ? "-lhd-" : "-lh0-";
}

std::string smallLhaHeader(const SampleMember& member, int level) {
  const std::string extended = level == 1 ? lhaExtended(member, 2) : "";
  const std::string name = level == 0 ? member.path : "";
  // What is beyond the first size belongs to the data in a header of level 1.
  const size_t beyond = extended.empty() ? 0 : extended.size() - 2;
  std::string fields = lhaMethod(member) + le32(member.content.size() + beyond) +
                       le32(member.size()) + words() + "\x20" + static_cast<char>(level) +
                       static_cast<char>(name.size()) + name + le16(0);
  if (level == 1) fields += "U" + extended.substr(0, 2);
  std::string header{static_cast<char>(fields.size()), byteSum(fields)};
  header += fields;
  return level == 1 ? header + extended.substr(2) : header;
}

uint16_t crc16(const std::string& bytes) {
  unsigned value = 0;
  for (const char byte : bytes) {
    value ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) value = (value & 1) != 0 ? value >> 1 ^ 0xA001 : value >> 1;
  }
  return static_cast<uint16_t>(value);
}

// Its first extended header holds a sum of the whole one, counted with that sum as 0.
std::string largeLhaHeader(const SampleMember& member, int level) {
  const size_t sizeBytes = level == 2 ? 2 : 4;
  const std::string sum = extendedHeader(std::string(3, '\0'), sizeBytes);
  const std::string extended = sum + lhaExtended(member, sizeBytes);
  const std::string fields = lhaMethod(member) + le32(member.content.size()) + le32(member.size()) +
                             le32(static_cast<uint64_t>(sampleTime())) + "\x20" +
                             static_cast<char>(level) + le16(crc16(member.content)) + "U";
  std::string header = level == 2 ? le16(2 + fields.size() + extended.size()) + fields
                                  : le16(4) + fields + le32(28 + extended.size());
  const size_t sumPlace = header.size() + sizeBytes + 1;
  header += extended;
  return header.replace(sumPlace, 2, le16(crc16(header)));
}

// Its sum is the usual one without the last turn of all bits.
std::string aceBlock(const std::string& fields) {
  return le16(~crc32(fields) & 0xFFFF) + le16(fields.size()) + fields;
}

constexpr uint16_t AceData = 1, AceComment = 2;

std::string aceMain() {
  return aceBlock(std::string(1, '\0') + le16(0) + "**ACE**" + number(0, 20));
}

// What `flags` announce stands in `behindName`.
std::string aceFile(const SampleMember& member, uint16_t flags, const std::string& behindName) {
  const std::string name = withoutSlash(member);
  const std::string fields = "\1" + le16(flags) + le32(member.content.size()) +
                             le32(member.size()) + words() +
                             le32(member.isDirectory() ? 0x10 : 0x20) +
                             le32(~crc32(member.content)) + number(0, 6) + le16(name.size());
  return aceBlock(fields + name + behindName) + member.content;
}

std::string wideAceFile(const SampleMember& member) {
  const std::string name = withoutSlash(member);
  const std::string fields = "\1" + le16(AceData) + le64(member.content.size()) +
                             le64(member.size()) + words() + le64(member.isDirectory() ? 1 : 0) +
                             number(0, 18) + le16(name.size());
  return aceBlock(fields + name) + member.content;
}

void putText(std::string& block, size_t offset, const std::string& text) {
  block.replace(offset, text.size(), text);
}

std::string octal(uint64_t value, int digits) {
  char text[32];
  snprintf(text, sizeof text, "%0*llo", digits, static_cast<unsigned long long>(value));
  return text;
}

}  // namespace

std::string le16(uint64_t value) {
  return number(value, 2);
}

std::string le32(uint64_t value) {
  return number(value, 4);
}

std::string le64(uint64_t value) {
  return number(value, 8);
}

time_t sampleTime() {
  return dosToTime(SampleWords);
}

std::string programStub() {
  return "MZ" + std::string(3000, 'x') + "PK Rar LHA";
}

std::string zipArchive(const SampleMembers& members, const std::string& stub) {
  std::string archive, directory;
  for (const SampleMember& member : members) {
    const std::string block = unicodeBlock(member);
    const std::string common = le16(0) + le16(0) + words() + le32(crc32(member.content)) +
                               le32(member.content.size()) + le32(member.size()) +
                               le16(member.path.size()) + le16(block.size());
    directory += "PK\1\2" + le16(0x0014) + le16(20) + common + le16(0) + le16(0) + le16(0) +
                 le32(0) + le32(archive.size()) + member.path + block;
    archive += "PK\3\4" + le16(20) + common + member.path + block + member.content;
  }
  return stub + archive + directory + "PK\5\6" + le16(0) + le16(0) + le16(members.size()) +
         le16(members.size()) + le32(directory.size()) + le32(archive.size()) + le16(0);
}

std::string zipMadeBy(ZipHost host, std::string archive) {
  constexpr size_t HostOffset = 5;
  for (size_t at = 0; (at = archive.find("PK\1\2", at)) != std::string::npos; ++at) {
    archive[at + HostOffset] = static_cast<char>(host);
  }
  return archive;
}

std::string rar4Archive(const SampleMembers& members, HeaderForm form, const std::string& stub) {
  std::string archive = stub + std::string("Rar!\x1a\7\0", 7) + rarBlock(0x73, 0, number(0, 6));
  for (const SampleMember& member : members) {
    const std::string name = withoutSlash(member);
    const auto flags = static_cast<uint16_t>(0x8000 | (member.isDirectory() ? 0xE0 : 0));
    std::string fields;
    if (form == HeaderForm::Published) {
      fields = le32(member.content.size()) + le32(member.size()) + "\3" +
               le32(crc32(member.content)) + words() + "\x14\x30" + le16(name.size()) +
               le32(member.isDirectory() ? 040755 : 0100644) + name;
    } else {
      fields = le64(member.content.size()) + le64(member.size()) + "\3" + number(0, 8) + words() +
               number(0, 2) + le16(name.size()) + le64(0) + name;
    }
    archive += rarBlock(0x74, flags, fields) + member.content;
  }
  return archive + rarBlock(0x7B, 0x4000, "");
}

std::string rar5Archive(const SampleMembers& members, const std::string& stub) {
  std::string archive =
      stub + std::string("Rar!\x1a\7\1\0", 8) + rar5Block(vint(1) + vint(0) + vint(0));
  for (const SampleMember& member : members) {
    const std::string name = withoutSlash(member);
    const bool directory = member.isDirectory();
    const std::string fields = vint(2) + vint(2) + vint(member.content.size()) +
                               vint(directory ? 3 : 6) + vint(member.size()) + vint(0644) +
                               le32(static_cast<uint64_t>(sampleTime())) +
                               (directory ? "" : le32(crc32(member.content))) + vint(0) + vint(1) +
                               vint(name.size()) + name;
    archive += rar5Block(fields) + member.content;
  }
  return archive + rar5Block(vint(5) + vint(0) + vint(0));
}

std::string lhaArchive(const SampleMembers& members, int level, const std::string& stub) {
  std::string archive = stub;
  for (const SampleMember& member : members) {
    archive += level < 2 ? smallLhaHeader(member, level) : largeLhaHeader(member, level);
    archive += member.content;
  }
  return archive + '\0';
}

std::string wideLhaArchive(const SampleMembers& members, const std::string& stub) {
  std::string archive = stub;
  for (const SampleMember& member : members) {
    const std::string fields = "x-lh0-" + le64(member.content.size()) + le64(member.size()) +
                               words() + number(0, 2) + static_cast<char>(member.path.size()) +
                               member.path;
    archive += static_cast<char>(fields.size() + 1) + fields + le16(0) + member.content;
  }
  return archive + '\0';
}

std::string arjHeader(const std::string& fields) {
  return "\x60\xEA" + le16(fields.size()) + fields + le32(crc32(fields)) + le16(0);
}

std::string arjArchive(const SampleMembers& members, HeaderForm form, const std::string& stub) {
  std::string archive = stub + arjHeader(std::string("\x1e\x0b\1\2\0\0\2\0", 8) + number(0, 22) +
                                         "a.arj" + std::string(2, '\0'));
  for (const SampleMember& member : members) {
    const std::string name = withoutSlash(member);
    const char type = member.isDirectory() ? '\3' : '\0';
    std::string fields = std::string("\x0b\1\0\x10\0", 5) + type + '\0' + words();
    if (form == HeaderForm::Published) {
      fields += le32(member.content.size()) + le32(member.size()) + le32(crc32(member.content)) +
                le16(0) + le16(0100644) + le16(0);
      fields = "\x1e" + fields;
    } else {
      fields += le64(member.content.size()) + le64(member.size());
      fields = static_cast<char>(fields.size() + 1) + fields;
    }
    archive += arjHeader(fields + name + std::string(2, '\0')) + member.content;
  }
  return archive + "\x60\xEA" + le16(0);
}

std::string aceArchive(const SampleMembers& members, HeaderForm form, const std::string& stub) {
  std::string archive = stub + aceMain();
  for (const SampleMember& member : members) {
    archive += form == HeaderForm::Published ? aceFile(member, AceData, "") : wideAceFile(member);
  }
  return archive;
}

std::string commentedAceArchive(const SampleMembers& members) {
  const std::string empty = le16(0);
  const std::string rest = number(0, 2);
  std::string archive = aceMain();
  for (const SampleMember& member : members) {
    archive += aceFile(member, AceData | AceComment, empty + rest);
  }
  return archive;
}

std::string haArchive(const SampleMembers& members, HeaderForm form) {
  std::string archive = "HA" + le16(members.size());
  for (const SampleMember& member : members) {
    std::string path = withoutSlash(member);
    const size_t slash = path.rfind('/');
    std::string directory = slash == std::string::npos ? "" : path.substr(0, slash + 1);
    for (char& c : directory) {
      if (c == '/') c = '\xFF';
    }
    archive += member.isDirectory() ? '\x2E' : '\x20';
    if (form == HeaderForm::Published) {
      archive += le32(member.content.size()) + le32(member.size()) + le32(crc32(member.content)) +
                 le32(static_cast<uint64_t>(sampleTime()));
    } else {
      archive += le64(member.content.size()) + le64(member.size()) + number(0, 8) + words();
    }
    archive += directory + '\0' + path.substr(slash == std::string::npos ? 0 : slash + 1) + '\0' +
               "\2mm" + member.content;
  }
  return archive;
}

std::string gzipArchive(const SampleMembers& members, HeaderForm form) {
  const SampleMember& member = members.front();
  const std::string head = std::string("\x1f\x8b\x08\x0e", 4) +
                           le32(static_cast<uint64_t>(sampleTime())) + std::string("\0\3", 2);
  const std::string texts = le16(4) + "ab\1\2" + member.path + '\0';
  const std::string sum = le16(crc32(head + texts) & 0xFFFF);
  const std::string data = "\1" + le16(member.content.size()) + le16(~member.content.size()) +
                           member.content + le32(crc32(member.content)) + le32(member.size());
  return form == HeaderForm::Published ? head + texts + sum + data : head + "??" + texts + data;
}

std::string tarBlock(const std::string& name, char type, uint64_t size, HeaderForm form) {
  std::string block(512, '\0');
  putText(block, 0, name.substr(0, 100));
  const bool directory = name.ends_with('/');
  putText(block, 100, octal(directory ? 040755 : 0100644, 7));
  putText(block, 108, octal(0, 7));
  putText(block, 116, octal(0, 7));
  putText(block, 124, octal(size, 11));
  putText(block, 136, octal(static_cast<uint64_t>(sampleTime()), 11));
  if (form == HeaderForm::Published) {
    block[156] = type;
    putText(block, 257, std::string("ustar\0", 6) + "00");
  }
  putText(block, 148, std::string(8, ' '));
  unsigned sum = 0;
  for (const char byte : block) sum += static_cast<unsigned char>(byte);
  putText(block, 148, octal(sum, 6) + std::string("\0 ", 2));
  return block;
}

std::string tarPadded(const std::string& data) {
  return data + std::string((512 - data.size() % 512) % 512, '\0');
}

std::string tarArchive(const SampleMembers& members, HeaderForm form) {
  std::string archive;
  for (const SampleMember& member : members) {
    archive += tarBlock(member.path, member.isDirectory() ? '5' : '0', member.size(), form) +
               tarPadded(member.content);
  }
  return archive + std::string(1024, '\0');
}

const SampleMembers& usualMembers() {
  static const SampleMembers members = {{"first.txt", "hello"},
                                        {"dir/", ""},
                                        {"dir/second.bin", std::string(700, '\1')},
                                        {"a/b/third", "x"},
                                        {"empty", ""}};
  return members;
}

const std::vector<SampleArchive>& sampleArchives() {
  using Members = const SampleMembers&;
  constexpr HeaderForm published = HeaderForm::Published, wide = HeaderForm::Wide;
  static const std::vector<SampleArchive> rows = {
      {"ZIP", ArchiveType::Zip, [](Members m) { return zipArchive(m); }, true},
      {"ZIP in a program", ArchiveType::Zip, [](Members m) { return zipArchive(m, programStub()); },
       true},
      {"RAR 4", ArchiveType::Rar, [](Members m) { return rar4Archive(m, published); }, true},
      {"RAR 4, wide", ArchiveType::Rar, [](Members m) { return rar4Archive(m, wide); }, true},
      {"RAR 4 in a program", ArchiveType::Rar,
       [](Members m) { return rar4Archive(m, published, programStub()); }, true},
      {"RAR 5", ArchiveType::Rar, [](Members m) { return rar5Archive(m); }, true},
      {"RAR 5 in a program", ArchiveType::Rar,
       [](Members m) { return rar5Archive(m, programStub()); }, true},
      {"LHA level 0", ArchiveType::Lharc, [](Members m) { return lhaArchive(m, 0); }, true},
      {"LHA level 1", ArchiveType::Lharc, [](Members m) { return lhaArchive(m, 1); }, true},
      {"LHA level 2", ArchiveType::Lharc, [](Members m) { return lhaArchive(m, 2); }, true},
      {"LHA level 3", ArchiveType::Lharc, [](Members m) { return lhaArchive(m, 3); }, true},
      {"LHA, wide", ArchiveType::Lharc, [](Members m) { return wideLhaArchive(m); }, true},
      {"LHA in a program", ArchiveType::Lharc,
       [](Members m) { return lhaArchive(m, 1, programStub()); }, true},
      {"ARJ", ArchiveType::Arj, [](Members m) { return arjArchive(m, published); }, true},
      {"ARJ, wide", ArchiveType::Arj, [](Members m) { return arjArchive(m, wide); }, true},
      {"ARJ in a program", ArchiveType::Arj,
       [](Members m) { return arjArchive(m, published, programStub()); }, true},
      {"ACE", ArchiveType::Ace, [](Members m) { return aceArchive(m, published); }, true},
      {"ACE, wide", ArchiveType::Ace, [](Members m) { return aceArchive(m, wide); }, true},
      {"ACE with comments", ArchiveType::Ace, commentedAceArchive, true},
      {"ACE in a program", ArchiveType::Ace,
       [](Members m) { return aceArchive(m, published, "MZ" + le16(60) + std::string(3000, 'x')); },
       true},
      {"HA", ArchiveType::Ha, [](Members m) { return haArchive(m, published); }, true},
      {"HA, wide", ArchiveType::Ha, [](Members m) { return haArchive(m, wide); }, true},
      {"GZIP", ArchiveType::Gzip, [](Members m) { return gzipArchive(m, published); }, false},
      {"GZIP, sum first", ArchiveType::Gzip, [](Members m) { return gzipArchive(m, wide); }, false},
      {"TAR", ArchiveType::Tar, [](Members m) { return tarArchive(m, published); }, true},
      {"TAR, old", ArchiveType::Tar, [](Members m) { return tarArchive(m, wide); }, true},
  };
  return rows;
}

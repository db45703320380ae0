#include <gtest/gtest.h>

#include "archive/archive_fixture.h"
#include "archive/crc32.h"

namespace {

// A central header with what a test wants of it, in an archive of nothing else.
struct ZipHeader {
  std::string name;
  uint8_t host = 0;
  uint16_t flags = 0;
  uint32_t packed = 0;
  uint32_t size = 0;
  std::string extra = "";
  std::string comment = "";

  std::string bytes() const {
    return "PK\1\2" + std::string{'\x14', static_cast<char>(host)} + le16(20) + le16(flags) +
           le16(0) + le16(SampleWords.time) + le16(SampleWords.date) + le32(0) + le32(packed) +
           le32(size) + le16(name.size()) + le16(extra.size()) + le16(comment.size()) + le16(0) +
           le16(0) + le32(0) + le32(0) + name + extra + comment;
  }
};

std::string endRecord(uint64_t directorySize, uint64_t offset, const std::string& comment = "") {
  return "PK\5\6" + le16(0) + le16(0) + le16(9999) + le16(9999) + le32(directorySize) +
         le32(offset) + le16(comment.size()) + comment;
}

std::string zipOf(const std::string& directory, const std::string& comment = "") {
  return "PK\3\4" + directory + endRecord(directory.size(), 4, comment);
}

std::string block(uint16_t id, const std::string& content) {
  return le16(id) + le16(content.size()) + content;
}

TEST(ZipReader, CountsInTheEndRecordAreNotBelieved) {
  const std::string bytes = zipOf(ZipHeader{.name = "a", .size = 5}.bytes());
  EXPECT_EQ(ReadArchive(bytes).names(), (Names{"a 5"}));
}

TEST(ZipReader, ADirectoryDisplacedByAStubIsFoundBehindIt) {
  const std::string bytes = zipArchive({{"a", "1"}, {"b/c", "22"}}, programStub());
  const ReadArchive read(bytes);
  EXPECT_TRUE(read.isArchive());
  EXPECT_EQ(read.names(), (Names{"a 1", "b/c 2"}));
  EXPECT_EQ(read.told(), Names{});
}

TEST(ZipReader, ADirectoryIsAlsoFoundByItsSizeFromItsEnd) {
  const std::string header = ZipHeader{.name = "a"}.bytes();
  const std::string bytes =
      "PK\3\4" + std::string(500, 'x') + header + endRecord(header.size(), 400);
  const ReadArchive read(bytes);
  EXPECT_EQ(read.names(), (Names{"a 0"}));
  EXPECT_EQ(read.told(), Names{});
}

TEST(ZipReader, AMarkerMayStandBeforeTheFirstHeader) {
  const std::string bytes = "PK00" + zipArchive({{"a", "1"}});
  EXPECT_EQ(ReadArchive(bytes).names(), (Names{"a 1"}));
}

TEST(ZipReader, TheLongestCommentIsReached) {
  const std::string comment(65535, 'c');
  const std::string bytes = zipOf(ZipHeader{.name = "a"}.bytes(), comment);
  EXPECT_EQ(ReadArchive(bytes).names(), (Names{"a 0"}));
}

TEST(ZipReader, ASignatureInTheCommentIsntTakenForTheEndRecord) {
  const std::string comment = "see PK\5\6 for" + std::string(40, 'x');
  const std::string bytes = zipOf(ZipHeader{.name = "a"}.bytes(), comment);
  const ReadArchive read(bytes);
  EXPECT_EQ(read.names(), (Names{"a 0"}));
  EXPECT_EQ(read.told(), Names{});
}

TEST(ZipReader, ACommentOfAMemberIsPassedOver) {
  const std::string bytes = zipOf(ZipHeader{.name = "a", .comment = "PK\1\2 and more"}.bytes() +
                                  ZipHeader{.name = "b"}.bytes());
  EXPECT_EQ(ReadArchive(bytes).names(), (Names{"a 0", "b 0"}));
}

TEST(ZipReader, LargeSizesReplaceOnlyWhatDoesntFit) {
  constexpr uint32_t Large = 0xFFFFFFFF;
  const std::string both = block(1, le64(6'000'000'000) + le64(5'000'000'000));
  const std::string sizeOnly = block(1, le64(7'000'000'000));
  const std::string bytes =
      zipOf(ZipHeader{.name = "both", .packed = Large, .size = Large, .extra = both}.bytes() +
            ZipHeader{.name = "neither", .packed = 3, .size = 4, .extra = both}.bytes() +
            ZipHeader{.name = "one", .packed = 8, .size = Large, .extra = sizeOnly}.bytes());
  const ReadArchive read(bytes);
  EXPECT_EQ(read.names(), (Names{"both 6000000000", "neither 4", "one 7000000000"}));
  EXPECT_EQ(read.records.packed(), 5'000'000'000u + 3 + 8);
}

TEST(ZipReader, TheLargeEndRecordTellsWhereTheDirectoryLies) {
  const std::string directory = ZipHeader{.name = "a"}.bytes();
  const uint64_t large = 4 + directory.size();
  const std::string bytes = "PK\3\4" + directory + "PK\6\6" + le64(44) + le32(0) + le64(0) +
                            le64(1) + le64(1) + le64(directory.size()) + le64(4) + "PK\6\7" +
                            le32(0) + le64(large) + le32(1) + endRecord(0xFFFFFFFF, 0xFFFFFFFF);
  const ReadArchive read(bytes);
  EXPECT_EQ(read.names(), (Names{"a 0"}));
  EXPECT_EQ(read.told(), Names{});
}

TEST(ZipReader, ALargeEndRecordForTheCountAloneEndsTheListWithoutAWord) {
  const std::string directory = ZipHeader{.name = "a"}.bytes();
  const std::string bytes = "PK\3\4" + directory + "PK\6\6" + le64(44) + le32(0) + le64(0) +
                            le64(1) + le64(1) + le64(directory.size()) + le64(4) +
                            endRecord(directory.size(), 4);
  const ReadArchive read(bytes);
  EXPECT_EQ(read.names(), (Names{"a 0"}));
  EXPECT_EQ(read.told(), Names{});
}

TEST(ZipReader, NamesAreDecodedByWhatTheyAreMarkedAs) {
  const std::string utf("\xC3\xBC"), raw("\xFC"), page("\x81");
  const std::string unicode = block(0x7075, "\1" + le32(crc32(page)) + "ä");
  const std::string wrongSum = block(0x7075, "\1" + le32(1) + "ä");
  const std::string bytes = zipOf(
      ZipHeader{.name = "1" + utf, .flags = 0x800}.bytes() + ZipHeader{.name = "2" + utf}.bytes() +
      ZipHeader{.name = "3" + raw, .host = 3}.bytes() + ZipHeader{.name = "4" + page}.bytes() +
      ZipHeader{.name = page, .extra = unicode}.bytes() +
      ZipHeader{.name = page, .extra = wrongSum}.bytes());
  const ReadArchive read(bytes);
  EXPECT_EQ(read.names(), (Names{"1ü 0", "2ü 0", "3\xFC 0", "4ü 0", "ä 0", "ü 0"}));
  for (uint32_t i = 0; i < read.records.count(); ++i) {
    const ArchiveRecord& record = read.records.at(i);
    if (utf8(record.name) == "ä") {
      EXPECT_EQ(record.stored, page);
    }
  }
}

TEST(ZipReader, WhatIsWrongIsTold) {
  const std::string header = ZipHeader{.name = "a"}.bytes();
  const std::string longName = ZipHeader{.name = std::string(8192, 'n')}.bytes();
  struct Row {
    std::string bytes;
    std::string told;
    Names names;
  };
  const Row rows[] = {
      {"PK\3\4 and nothing more", "Central directory not found in", {}},
      {"PK\3\4", "Central directory not found in", {}},
      {"PK\3\4xxxxPK\5\6", "ZIP corrupt, cannot read file list", {}},
      {"PK\3\4" + endRecord(10, 100000), "ZIP corrupt, nonsense header read", {}},
      {"PK\3\4xxxxxxxx" + endRecord(1, 4), "ZIP corrupt, bad central directory", {}},
      {zipOf(header + "garbage" + std::string(50, 'x')),
       "ZIP corrupt, bad central directory",
       {"a 0"}},
      {zipOf(header + longName), "ZIP corrupt, cannot read file list", {"a 0"}},
  };
  for (const Row& row : rows) {
    const ReadArchive read(row.bytes);
    EXPECT_EQ(read.told(), Names{row.told});
    EXPECT_EQ(read.isArchive(), !row.names.empty()) << row.told;
    EXPECT_EQ(read.names(), row.names);
  }
}

TEST(ZipReader, ADamagedZipMayBeAnotherArchiveAllTheSame) {
  std::string bytes =
      tarBlock("PK\3\4 name", '0', 0, HeaderForm::Published) + std::string(512, '\0');
  const ReadArchive read(bytes);
  EXPECT_EQ(read.type, ArchiveType::Tar);
  EXPECT_EQ(read.names(), (Names{"PK\3\4 name 0"}));
  EXPECT_EQ(read.told(), Names{"Central directory not found in"});
}

TEST(ZipReader, ThePlaceOfAStubEndsTheSearchForIt) {
  const std::string near = "MZ" + std::string(0x20000 - 2 - 4, 'x');
  EXPECT_TRUE(ReadArchive(zipArchive({{"a", ""}}, near)).isArchive());
  const std::string far = near + "x";
  EXPECT_FALSE(ReadArchive(zipArchive({{"a", ""}}, far)).isArchive());
}

}  // namespace

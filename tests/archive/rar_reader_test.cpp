#include <gtest/gtest.h>

#include "archive/archive_fixture.h"
#include "foundation/entry.h"

namespace {

const std::string Marker("Rar!\x1a\7\0", 7);

std::string block(uint8_t type, uint16_t flags, const std::string& fields) {
  return le16(0) + static_cast<char>(type) + le16(flags) + le16(7 + fields.size()) + fields;
}

std::string mainBlock(uint16_t flags = 0) {
  return block(0x73, flags, std::string(6, '\0'));
}

struct RarFile {
  std::string name;
  uint16_t flags = 0;
  uint8_t host = 3;
  uint32_t attributes = 0;
  uint32_t packed = 0;
  uint32_t size = 0;
  std::string afterFixed = "";  // high sizes
  std::string tail = "";

  std::string bytes() const {
    return block(0x74, static_cast<uint16_t>(0x8000 | flags),
                 le32(packed) + le32(size) + static_cast<char>(host) + le32(0) + le16(0x6123) +
                     le16(0x5A21) + "\x14\x30" + le16(name.size()) + le32(attributes) + afterFixed +
                     name + tail);
  }
};

TEST(RarReader, ANameEndsAtItsNul) {
  const std::string bytes =
      Marker + mainBlock() +
      RarFile{.name = std::string("plain\0encoded", 13), .flags = 0x200}.bytes();
  EXPECT_EQ(ReadArchive(bytes).names(), (Names{"plain 0"}));
}

TEST(RarReader, ABackslashSeparatesDirectories) {
  const std::string bytes = Marker + mainBlock() + RarFile{.name = "a\\b\\c"}.bytes() +
                            RarFile{.name = "a\\d", .flags = 0xE0}.bytes();
  EXPECT_EQ(ReadArchive(bytes).names(), (Names{"a/b/c 0", "a/d/ 0"}));
}

TEST(RarReader, OfTheAttributesOfDosOnlyTheThirdBitIsKept) {
  const std::string bytes = Marker + mainBlock() +
                            RarFile{.name = "dos", .host = 2, .attributes = 0x29}.bytes() +
                            RarFile{.name = "unix", .host = 3, .attributes = 0x29}.bytes();
  const ReadArchive read(bytes);
  ASSERT_EQ(read.records.count(), 2u);
  EXPECT_EQ(read.records.at(0).attributes, Attribute::Hidden);
  EXPECT_EQ(read.records.at(1).attributes, 0);
}

TEST(RarReader, SizesBeyondFourGigabytesHaveTheirUpperHalvesBehindTheFixedFields) {
  const std::string bytes =
      Marker + mainBlock() +
      RarFile{
          .name = "large", .flags = 0x100, .packed = 1, .size = 2, .afterFixed = le32(1) + le32(1)}
          .bytes();
  const ReadArchive read(bytes);
  EXPECT_EQ(read.names(), (Names{"large 4294967298"}));
  EXPECT_EQ(read.records.packed(), 4294967297u);
  EXPECT_EQ(read.told(), Names{"Archive is damaged"}) << "its data isn't there";
}

TEST(RarReader, SaltAndTimesMayFollowTheName) {
  const std::string bytes = Marker + mainBlock() +
                            RarFile{.name = "salted", .flags = 0x400, .tail = "12345678"}.bytes() +
                            RarFile{.name = "timed", .flags = 0x1000, .tail = "12345"}.bytes();
  EXPECT_EQ(ReadArchive(bytes).names(), (Names{"salted 0", "timed 0"}));
}

TEST(RarReader, OtherBlocksAreSkippedWithTheirData) {
  const std::string bytes = Marker + mainBlock() + block(0x7A, 0x8000, le32(5) + "fields") +
                            "xxxxx" + block(0x75, 0, "comment") + RarFile{.name = "a"}.bytes();
  const ReadArchive read(bytes);
  EXPECT_EQ(read.names(), (Names{"a 0"}));
  EXPECT_EQ(read.told(), Names{});
}

TEST(RarReader, EncryptedHeadersAreTold) {
  const std::string four = Marker + mainBlock(0x80) + "unreadable";
  EXPECT_EQ(ReadArchive(four).told(), Names{"Archive headers are encrypted"});
  EXPECT_TRUE(ReadArchive(four).isArchive());
  const std::string five =
      std::string("Rar!\x1a\7\1\0", 8) + le32(0) + "\2\4" + '\0' + "unreadable";
  EXPECT_EQ(ReadArchive(five).told(), Names{"Archive headers are encrypted"});
}

TEST(RarReader, AHeaderOfAWrongSizeIsTold) {
  const std::string small = Marker + mainBlock() + le16(0) + "\x74" + le16(0) + le16(6) + "xx";
  EXPECT_EQ(ReadArchive(small).told(), Names{"Error in RAR header"});
  EXPECT_FALSE(ReadArchive(small).isArchive());
  const std::string large = Marker + mainBlock() + RarFile{.name = std::string(8200, 'n')}.bytes();
  EXPECT_EQ(ReadArchive(large).told(), Names{"Error in RAR header"});
  const std::string later = Marker + mainBlock() + RarFile{.name = "a"}.bytes() + le16(0) + "\x74" +
                            le16(0) + le16(6) + "xx";
  EXPECT_EQ(ReadArchive(later).names(), (Names{"a 0"})) << "the list stays as far as it was read";
  EXPECT_EQ(ReadArchive(later).told(), Names{"Error in RAR header"});
}

TEST(RarReader, TheSecondBlockMustBeTheMainOne) {
  const std::string bytes = Marker + RarFile{.name = "a"}.bytes();
  EXPECT_FALSE(ReadArchive(bytes).isArchive());
  EXPECT_EQ(ReadArchive(bytes).told(), Names{});
}

TEST(RarReader, WhatFollowsTheEndBlockIsNotRead) {
  const std::string bytes =
      Marker + mainBlock() + RarFile{.name = "a"}.bytes() + block(0x7B, 0, "") + "garbage";
  EXPECT_EQ(ReadArchive(bytes).told(), Names{});
}

TEST(Rar5Reader, TimesOfTheExtraRecordCount) {
  // A time of Windows: 2025-01-01 00:00:00 GMT in its ticks.
  const std::string times = std::string("\3\2", 2) + le64(133'801'632'000'000'000);
  const std::string extra = static_cast<char>(times.size()) + times;
  const std::string fields = std::string("\2\1", 2) + static_cast<char>(extra.size()) +
                             std::string("\0\5\0\0\1\1n", 8) + extra;
  const std::string bytes =
      std::string("Rar!\x1a\7\1\0", 8) + le32(0) + static_cast<char>(fields.size()) + fields;
  const ReadArchive read(bytes);
  EXPECT_EQ(read.names(), (Names{"n 5"}));
  ASSERT_EQ(read.records.count(), 1u);
  const DosTime expected = timeToDos(1735689600);
  EXPECT_EQ(read.records.at(0).when.date, expected.date);
  EXPECT_EQ(read.records.at(0).when.time, expected.time);
}

TEST(Rar5Reader, ANumberWithoutAnEndIsDamage) {
  const std::string bytes = std::string("Rar!\x1a\7\1\0", 8) + le32(0) + std::string(20, '\xFF');
  EXPECT_EQ(ReadArchive(bytes).told(), Names{"Archive is damaged"});
}

}  // namespace

// LHA, ARJ, ACE, HA and GZIP.

#include <gtest/gtest.h>

#include "archive/archive_fixture.h"
#include "foundation/system.h"

namespace {

TEST(LhaReader, WhatOnePackerKeepsBesideTheFilesIsDropped) {
  const std::string bytes = lhaArchive(
      {{"EAS/a", ""}, {"eas\\b", ""}, {"apply-ea.cmd", ""}, {"d/Apply-Ea.Cmd", ""}, {"EAS2/a", ""}},
      0);
  EXPECT_EQ(ReadArchive(bytes).names(), (Names{"EAS2/a 0"}));
}

TEST(LhaReader, AWrongSumEndsTheList) {
  std::string bytes = lhaArchive({{"a", "1"}, {"b", "2"}}, 0);
  const size_t second = bytes.size() / 2;
  bytes[second + 15] ^= 1;
  const ReadArchive read(bytes);
  EXPECT_EQ(read.names(), (Names{"a 1"}));
  EXPECT_EQ(read.told(), Names{"Archive is damaged"});
}

TEST(LhaReader, AHeaderWhoseLowByteIsNulIsntTheEndOnTheUpperLevels) {
  std::string header;
  size_t length = 200;
  do {
    header = lhaArchive({{std::string(length++, 'n'), "x"}}, 2);
  } while (header[0] != 0);
  EXPECT_EQ(ReadArchive(header).records.count(), 1u);
}

TEST(LhaReader, MethodsOfOtherPackersAreTaken) {
  for (const char* method : {"-lz4-", "-pm1-", "-lh7-"}) {
    std::string bytes = lhaArchive({{"a", "1"}}, 2);
    bytes.replace(2, 5, method);
    EXPECT_EQ(ReadArchive(bytes).names(), (Names{"a 1"})) << method;
  }
}

TEST(LhaReader, AStubEndsBeforeSixtyFourKilobytes) {
  const std::string archive = lhaArchive({{"a", "1"}}, 1);
  EXPECT_TRUE(ReadArchive("MZ" + std::string(65536 - 2 - 7, 'x') + archive).isArchive());
  EXPECT_FALSE(ReadArchive("MZ" + std::string(65536 - 2 - 6, 'x') + archive).isArchive());
}

std::string arjFile(const std::string& name, char type, char host, uint32_t when) {
  return arjHeader(std::string("\x1e\x0b\1", 3) + host + std::string("\x10\0", 2) + type + '\0' +
                   le32(when) + std::string(18, '\0') + name + std::string(2, '\0'));
}

TEST(ArjReader, LabelsAndCommentsAreNoMembersAndUnixHasItsOwnTime) {
  const std::string main =
      arjHeader(std::string("\x1e\x0b\1\2\0\0\2\0", 8) + std::string(24, '\0'));
  const std::string bytes = main + arjFile("label", 4, 0, 0) + arjFile("comment", 2, 0, 0) +
                            arjFile("dos", 0, 0, 0x5A216123) +
                            arjFile("unix", 0, 2, static_cast<uint32_t>(sampleTime())) +
                            "\x60\xEA" + le16(0);
  const ReadArchive read(bytes);
  EXPECT_EQ(read.names(), (Names{"dos 0", "unix 0"}));
  for (uint32_t i = 0; i < read.records.count(); ++i) {
    EXPECT_EQ(read.records.at(i).when.date, SampleWords.date);
    EXPECT_EQ(read.records.at(i).when.time, SampleWords.time);
  }
}

TEST(ArjReader, AnArchiveWithoutMembersIsNone) {
  const std::string bytes =
      arjHeader(std::string("\x1e\x0b\1\2\0\0\2\0", 8) + std::string(24, '\0')) + "\x60\xEA" +
      le16(0);
  EXPECT_FALSE(ReadArchive(bytes).isArchive());
  EXPECT_EQ(ReadArchive(bytes).told(), Names{});
}

TEST(ArjReader, ASignatureInAStubThatIsNoHeaderIsPassedOver) {
  const std::string stub = "MZ" + std::string(100, 'x') + "\x60\xEA" + std::string(100, '\xFF');
  EXPECT_EQ(ReadArchive(arjArchive({{"a", "1"}}, HeaderForm::Published, stub)).names(),
            (Names{"a 1"}));
}

TEST(AceReader, AFileThatFitsNeitherFormIsNoArchive) {
  std::string bytes = aceArchive({{"name", "1"}}, HeaderForm::Published);
  bytes[bytes.size() - 7] = 100;  // the length of the name
  EXPECT_FALSE(ReadArchive(bytes).isArchive());
  EXPECT_EQ(ReadArchive(bytes).told(), Names{});
}

TEST(HaReader, AnEmptyArchiveSucceeds) {
  const std::string bytes("HA\0\0", 4);
  const ReadArchive read(bytes);
  EXPECT_TRUE(read.isArchive());
  EXPECT_EQ(read.type, ArchiveType::Ha);
  EXPECT_EQ(read.records.count(), 0u);
}

TEST(HaReader, ATextThatBeginsAlikeIsNone) {
  for (const char* text :
       {"HAVE a look at this text, which is longer than a header", "HA", "HALT"}) {
    EXPECT_FALSE(ReadArchive(text).isArchive()) << text;
  }
}

TEST(GzipReader, WithoutAStoredNameItIsMadeOfTheArchives) {
  const std::string bytes =
      std::string("\x1f\x8b\x08\0\0\0\0\0\0\3", 10) + "\3" + '\0' + le32(0) + le32(7);
  const std::pair<const wchar_t*, std::string> rows[] = {{L"a.txt.gz", "a.txt"},
                                                         {L"A.GZ", "A"},
                                                         {L"b.tgz", "b.tar"},
                                                         {L"B.TGZ", "B.tar"},
                                                         {L"c", "c"}};
  for (const auto& [archive, expected] : rows) {
    EXPECT_EQ(ReadArchive(bytes, archive).names(), (Names{expected + " 7"}));
  }
}

TEST(GzipReader, OfAStoredNameTheLastComponentCounts) {
  const auto named = [](const std::string& name) {
    return std::string("\x1f\x8b\x08\x08\0\0\0\0\0\3", 10) + name + '\0' + "\3" + '\0' + le32(0) +
           le32(7);
  };
  EXPECT_EQ(ReadArchive(named("a/b.txt"), L"x.gz").names(), (Names{"b.txt 7"}));
  EXPECT_EQ(ReadArchive(named("../.."), L"x.gz").names(), (Names{"x 7"}));
  EXPECT_EQ(ReadArchive(named("a/"), L"x.gz").names(), (Names{"x 7"}));
}

TEST(ArchiveBytes, AFileIsReadInWindowsWhateverTheOrder) {
  TempDir place;
  std::string content;
  for (int i = 0; i < 200000; ++i) content += le32(static_cast<uint64_t>(i));
  place.write("file", content);
  Descriptor file(System::open(place.path("file").c_str(), O_RDONLY));
  ArchiveBytes bytes(file.get(), content.size());
  for (const size_t position : {0, 5, 4090, 500000, 4, 799990, 262144, 262140, 0}) {
    EXPECT_EQ(bytes.at(position, 20), content.substr(position, 20)) << position;
  }
  EXPECT_EQ(bytes.at(3, 1 << 30).size(), ArchiveBytes::LargestView);
  EXPECT_EQ(bytes.at(content.size(), 1), "");
  EXPECT_EQ(bytes.at(content.size() + 1, 1), "");
  EXPECT_EQ(bytes.at(UINT64_MAX, 1), "");
  EXPECT_EQ(bytes.error(), 0);
}

}  // namespace

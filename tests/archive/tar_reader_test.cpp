#include <gtest/gtest.h>

#include "archive/archive_fixture.h"
#include "archive/tar_header.h"

namespace {

constexpr HeaderForm Ustar = HeaderForm::Published;
const std::string End(1024, '\0');

// A block with other bytes at a place, its sum mended.
std::string changed(std::string block, size_t offset, const std::string& bytes) {
  block.replace(offset, bytes.size(), bytes);
  block.replace(148, 8, "        ");
  unsigned sum = 0;
  for (const char byte : block) sum += static_cast<unsigned char>(byte);
  char text[8];
  snprintf(text, sizeof text, "%06o", sum);
  block.replace(148, 7, std::string(text, 7));
  return block;
}

std::string pax(char type, const std::string& values) {
  return tarBlock("pax", type, values.size(), Ustar) + tarPadded(values);
}

TEST(TarReader, ABadSumInTheFirstBlockIsNoArchive) {
  std::string bytes = tarArchive({{"a", "1"}}, Ustar);
  bytes[0] = 'b';
  EXPECT_FALSE(ReadArchive(bytes).isArchive());
  EXPECT_EQ(ReadArchive(bytes).told(), Names{});
}

TEST(TarReader, ABadSumLaterEndsTheListAndIsTold) {
  std::string bytes = tarArchive({{"a", "1"}, {"b", "2"}, {"c", "3"}}, Ustar);
  bytes[1024] = 'x';
  const ReadArchive read(bytes);
  EXPECT_EQ(read.names(), (Names{"a 1"}));
  EXPECT_EQ(read.told(), Names{"Archive is damaged"});
}

TEST(TarReader, TheSumMayBeThatOfSignedBytes) {
  std::string block = tarBlock("n\xFC", '0', 0, Ustar);
  block.replace(148, 8, "        ");
  int sum = 0;
  for (const char byte : block) sum += static_cast<signed char>(byte);
  char text[8];
  snprintf(text, sizeof text, "%06o", static_cast<unsigned>(sum));
  block.replace(148, 7, std::string(text, 7));
  const std::string bytes = block + End;
  EXPECT_EQ(ReadArchive(bytes).names(), (Names{"n\xFC 0"}));
}

TEST(TarReader, LongNamesStandBeforeTheirMember) {
  const std::string name = std::string(150, 'd') + "/" + std::string(200, 'f');
  const std::string bytes = tarBlock("././@LongLink", 'L', name.size() + 1, Ustar) +
                            tarPadded(name + '\0') + tarBlock(name.substr(0, 100), '0', 1, Ustar) +
                            tarPadded("x") + tarBlock("next", '0', 0, Ustar) + End;
  EXPECT_EQ(ReadArchive(bytes).names(), (Names{name + " 1", "next 0"}));
}

TEST(TarReader, ThePrefixStandsBeforeTheNameInThePosixFormOnly) {
  const std::string posix = changed(tarBlock("name", '0', 0, Ustar), 345, "some/prefix");
  EXPECT_EQ(ReadArchive(posix + End).names(), (Names{"some/prefix/name 0"}));
  const std::string other = changed(posix, 257, std::string("ustar  \0", 8));
  EXPECT_EQ(ReadArchive(other + End).names(), (Names{"name 0"}));
}

TEST(TarReader, ExtendedValuesHoldForTheNextMemberOrForAll) {
  const std::string bytes = pax('g', "20 mtime=1000000000\n") +
                            pax('x',
                                "22 path=long/name.txt\n"
                                "10 size=3\n") +
                            tarBlock("short", '0', 0, Ustar) + tarPadded("abc") +
                            tarBlock("next", '0', 0, Ustar) + End;
  const ReadArchive all(bytes);
  EXPECT_EQ(all.names(), (Names{"long/name.txt 3", "next 0"}));
  ASSERT_EQ(all.records.count(), 2u);
  const DosTime expected = timeToDos(1000000000);
  EXPECT_EQ(all.records.at(1).when.date, expected.date);
}

TEST(TarReader, AnExtensionLargerThanAMegabyteIsDamage) {
  const std::string bytes = tarBlock("a", '0', 0, Ustar) +
                            tarBlock("pax", 'x', (1 << 20) + 1, Ustar) + std::string(2 << 20, 'x');
  const ReadArchive read(bytes);
  EXPECT_EQ(read.names(), (Names{"a 0"}));
  EXPECT_EQ(read.told(), Names{"Archive is damaged"});
}

TEST(TarReader, LinksAndDevicesHaveNoData) {
  std::string bytes;
  for (const char type : {'1', '2', '3', '4', '6'}) {
    bytes += tarBlock(std::string("t") + type, type, 4096, Ustar);
  }
  bytes += tarBlock("file", '0', 1, Ustar) + tarPadded("x") + End;
  EXPECT_EQ(ReadArchive(bytes).names(), (Names{"file 1", "t1 0", "t2 0", "t3 0", "t4 0", "t6 0"}));
}

TEST(TarReader, SparseMembersHaveMoreBlocksAndTheirRealSize) {
  std::string sparse = changed(tarBlock("hole", 'S', 512, Ustar), 482, "\1");
  sparse = changed(sparse, 483, "00000100000");
  std::string more(512, '\0'), last(512, '\0');
  more[504] = 1;
  const std::string bytes =
      sparse + more + last + std::string(512, 'd') + tarBlock("next", '0', 0, Ustar) + End;
  EXPECT_EQ(ReadArchive(bytes).names(), (Names{"hole 32768", "next 0"}));
}

TEST(TarReader, NumbersMayBeBinary) {
  const std::string size =
      std::string("\x80", 1) + std::string(6, '\0') + '\2' + std::string(4, '\0');
  const std::string bytes = changed(tarBlock("large", '0', 0, Ustar), 124, size);
  const ReadArchive read(bytes);
  EXPECT_EQ(read.names(), (Names{"large 8589934592"}));
  EXPECT_EQ(read.told(), Names{"Archive is damaged"}) << "its data isn't there";
}

TEST(TarReader, ASizeThatIsNoNumberIsDamage) {
  const std::string bytes = tarBlock("a", '0', 0, Ustar) +
                            changed(tarBlock("b", '0', 0, Ustar), 124, "0000000009x") + End;
  const ReadArchive read(bytes);
  EXPECT_EQ(read.names(), (Names{"a 0"}));
  EXPECT_EQ(read.told(), Names{"Archive is damaged"});
}

TEST(TarReader, AModeOfADirectoryMakesOne) {
  const std::string bytes =
      changed(tarBlock("dir", '0', 0, HeaderForm::Wide), 100, "0040755") + End;
  EXPECT_EQ(ReadArchive(bytes).names(), (Names{"dir/ 0"}));
}

TEST(TarReader, ATarWithoutAnEndIsWhole) {
  const std::string bytes = tarBlock("a", '0', 1, Ustar) + tarPadded("x");
  EXPECT_EQ(ReadArchive(bytes).names(), (Names{"a 1"}));
  EXPECT_EQ(ReadArchive(bytes).told(), Names{});
}

TEST(TarHeader, OctalNumbersAreChecked) {
  EXPECT_EQ(octalNumber(" 17 "), 15u);
  EXPECT_EQ(octalNumber(std::string_view("17\0x", 4)), 15u);
  EXPECT_EQ(octalNumber(""), 0u);
  EXPECT_EQ(octalNumber("18"), std::nullopt);
  EXPECT_EQ(octalNumber("7777777777777777777777"), std::nullopt);
}

}  // namespace

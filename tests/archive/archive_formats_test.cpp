#include <gtest/gtest.h>

#include <random>

#include "archive/archive_fixture.h"

namespace {

constexpr int DamagedCopies = 1000;
constexpr size_t BytesOfADamage = 100;

SampleMembers membersOf(const SampleArchive& row) {
  SampleMembers members = usualMembers();
  if (row.type == ArchiveType::Gzip) members.resize(1);
  return members;
}

// Directories at the end have lost theirs in formats that hold none.
TEST(ArchiveFormats, EveryFormatIsListedInEachOfItsForms) {
  ASSERT_FALSE(sampleArchives().empty());
  for (const SampleArchive& row : sampleArchives()) {
    SCOPED_TRACE(row.what);
    const SampleMembers members = membersOf(row);
    const std::string bytes = row.make(members);
    const ReadArchive read(bytes);
    ASSERT_TRUE(read.isArchive());
    EXPECT_EQ(read.type, row.type);
    EXPECT_EQ(read.names(), namesOf(members));
    EXPECT_EQ(read.told(), Names{});
    for (uint32_t i = 0; i < read.records.count(); ++i) {
      EXPECT_EQ(read.records.at(i).when.date, SampleWords.date);
      EXPECT_EQ(read.records.at(i).when.time, SampleWords.time);
    }
  }
}

TEST(ArchiveFormats, ACutArchiveIsListedAsFarAsItGoes) {
  int looked = 0;
  for (const SampleArchive& row : sampleArchives()) {
    SCOPED_TRACE(row.what);
    const SampleMembers members = membersOf(row);
    const std::string bytes = row.make(members);
    const Names all = namesOf(members);
    size_t most = 0;
    for (size_t length = 0; length < bytes.size(); ++length) {
      const std::string cut = bytes.substr(0, length);
      const ReadArchive read(cut);
      ++looked;
      if (!read.isArchive()) continue;
      const Names names = read.names();
      // A packed file has its size at its end.
      if (row.type != ArchiveType::Gzip) {
        EXPECT_TRUE(std::includes(all.begin(), all.end(), names.begin(), names.end())) << length;
      }
      EXPECT_GE(names.size(), most) << length;
      most = names.size();
    }
  }
  EXPECT_GT(looked, 1000);
}

TEST(ArchiveFormats, DamagedArchivesAreReadWithoutHarm) {
  int archives = 0;
  for (const SampleArchive& row : sampleArchives()) {
    const std::string whole = row.make(membersOf(row));
    for (unsigned seed = 1; seed <= DamagedCopies; ++seed) {
      std::mt19937 random(seed);
      std::string bytes = whole;
      for (size_t i = 0; i < 1 + bytes.size() / BytesOfADamage; ++i) {
        bytes[random() % bytes.size()] = static_cast<char>(random());
      }
      const ReadArchive read(bytes);
      if (!read.isArchive()) continue;
      ++archives;
      ASSERT_LE(read.records.count(), bytes.size()) << row.what << " with seed " << seed;
    }
  }
  EXPECT_GT(archives, 1000);
}

TEST(ArchiveFormats, TheFirstReaderThatSucceedsNamesTheType) {
  EXPECT_STREQ(archiveTypeName(ArchiveType::Zip), L"ZIP");
  EXPECT_STREQ(archiveTypeName(ArchiveType::Lharc), L"LHARC");
  EXPECT_STREQ(archiveTypeName(ArchiveType::Tar), L"TAR");
  EXPECT_EQ(static_cast<int>(ArchiveType::Tar), 7);
}

TEST(ArchiveFormats, ATextThatBeginsAsAProgramIsNoArchiveAndNothingIsTold) {
  const std::string text = "MZ" + std::string(200000, 'P') + "and the rest of it";
  const ReadArchive read(text);
  EXPECT_EQ(read.found, Recognised::No);
  EXPECT_EQ(read.told(), Names{});
}

TEST(ArchiveFormats, AnEmptyFileIsNoArchive) {
  const ReadArchive read("");
  EXPECT_EQ(read.found, Recognised::No);
  EXPECT_EQ(read.told(), Names{});
}

TEST(ArchiveFormats, ALimitEndsTheListAndIsTold) {
  SampleMembers many;
  for (int i = 0; i < 500; ++i) many.push_back({"name" + std::to_string(i), ""});
  const std::string bytes = tarArchive(many, HeaderForm::Published);
  for (const ArchiveRecords::Limits limits :
       {ArchiveRecords::Limits{.records = 100}, ArchiveRecords::Limits{.poolBytes = 1000}}) {
    ArchiveBytes view(bytes);
    ArchiveRecords records(limits);
    ArchiveWatcher watcher;
    ArchiveReading reading(view, records, L"", watcher);
    ArchiveType type{};
    EXPECT_EQ(readArchive(reading, records, type), Recognised::Yes);
    EXPECT_LE(records.count(), 100u);
    EXPECT_GT(records.count(), 10u);
    ASSERT_EQ(reading.messages().size(), 1u);
    EXPECT_EQ(utf8(reading.messages()[0].text()), "Too many names, not all are shown");
  }
}

TEST(ArchiveFormats, AnyFormatStopsWhenTheUserWantsIt) {
  struct Stopping : ArchiveWatcher {
    bool stopped() override { return true; }
  };
  SampleMembers many;
  for (int i = 0; i < 3000; ++i) many.push_back({"name" + std::to_string(i), ""});
  for (const SampleArchive& row : sampleArchives()) {
    if (row.type == ArchiveType::Gzip) continue;
    SCOPED_TRACE(row.what);
    const std::string bytes = row.make(many);
    ArchiveBytes view(bytes);
    ArchiveRecords records;
    Stopping watcher;
    ArchiveReading reading(view, records, L"", watcher);
    ArchiveType type{};
    EXPECT_EQ(readArchive(reading, records, type), Recognised::Stopped);
    EXPECT_TRUE(reading.messages().empty());
  }
}

}  // namespace

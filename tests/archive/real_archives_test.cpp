// Archives by the packers of the system, and those of the generator seen by its other readers. All
// of them must be there: packaging/dependencies installs them.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "archive/archive_fixture.h"

namespace {

bool isInstalled(const std::string& tool) {
  return system(("command -v " + tool + " >/dev/null 2>&1").c_str()) == 0;
}

std::string outputOf(const std::string& command) {
  std::string output;
  FILE* pipe = popen(("LC_ALL=C.UTF-8 " + command + " 2>/dev/null").c_str(), "r");
  if (pipe == nullptr) return output;
  char buffer[4096];
  for (size_t got; (got = fread(buffer, 1, sizeof buffer, pipe)) > 0;) output.append(buffer, got);
  pclose(pipe);
  return output;
}

// Lines without "./" in front and "/" behind; directories alone are left out where `files` says so.
Names pathsOf(const std::string& lines) {
  Names paths;
  std::istringstream stream(lines);
  for (std::string line; std::getline(stream, line);) {
    if (line.starts_with("./")) line.erase(0, 2);
    if (line.ends_with('/')) line.pop_back();
    if (!line.empty()) paths.push_back(line);
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

Names pathsIn(const std::string& bytes, const std::string& name) {
  const ReadArchive read(bytes, decodeFileName(name.c_str()).data());
  EXPECT_TRUE(read.isArchive());
  EXPECT_EQ(read.told(), Names{});
  std::string lines;
  for (const std::string& line : read.names()) lines += line.substr(0, line.rfind(' ')) + "\n";
  return pathsOf(lines);
}

class RealArchives : public testing::Test {
 protected:
  RealArchives() {
    place.makeDir("in");
    place.makeDir("in/sub");
    place.makeDir("in/sub/deeper");
    place.makeDir("in/ä ö");
    place.write("in/one.txt", std::string(5000, 'o'));
    place.write("in/sub/two words.txt", "two");
    place.write("in/sub/deeper/d", "");
    place.write("in/ä ö/ü.txt", "u");
    place.makeDir("in/sub/" + std::string(60, 'l'));
    place.write("in/sub/" + longName(), "long");
  }
  // More than the old form of tapes holds without a prefix.
  static std::string longName() { return std::string(60, 'l') + "/" + std::string(60, 'm'); }
  static Names files() {
    return {"one.txt 5000", "sub/deeper/d 0", "sub/" + longName() + " 4", "sub/two words.txt 3"};
  }
  // Runs in the directory that is packed.
  bool pack(const std::string& command) const {
    return system(("cd '" + place.path("in") + "' && " + command + " >/dev/null 2>&1").c_str()) ==
           0;
  }

  TempDir place;
};

// What packs, and what lists the archive in another way.
struct Packer {
  const char* tool;
  const char* pack;
  const char* archive;
  const char* lister;
  const char* list;
};

TEST_F(RealArchives, AreListedAsByTheirOwnTools) {
  const Packer packers[] = {
      {"zip", "zip -qr ../a.zip .", "a.zip", "unzip", "unzip -Z1"},
      {"bsdtar", "bsdtar --format=zip -cf ../b.zip .", "b.zip", "bsdtar", "bsdtar -tf"},
      {"tar", "tar --format=gnu -cf ../gnu.tar .", "gnu.tar", "tar", "tar -tf"},
      {"tar", "tar --format=pax -cf ../pax.tar .", "pax.tar", "tar", "tar -tf"},
      {"tar", "tar --format=ustar -cf ../ustar.tar .", "ustar.tar", "tar", "tar -tf"},
      {"tar", "rm -rf sub/l* && tar --format=v7 -cf ../v7.tar .", "v7.tar", "tar", "tar -tf"},
      {"bsdtar", "bsdtar --format=pax -cf ../b.tar .", "b.tar", "bsdtar", "bsdtar -tf"},
  };
  for (const Packer& packer : packers) {
    SCOPED_TRACE(packer.pack);
    ASSERT_TRUE(isInstalled(packer.tool) && isInstalled(packer.lister));
    ASSERT_TRUE(pack(packer.pack));
    const Names expected =
        pathsOf(outputOf(std::string(packer.list) + " '" + place.path(packer.archive) + "'"));
    Names listed = pathsIn(place.read(packer.archive), packer.archive);
    std::erase(listed, "");
    EXPECT_EQ(listed, [&] {
      Names names = expected;
      std::erase(names, ".");
      return names;
    }());
  }
}

TEST_F(RealArchives, OfArjHasNamesAndTheTimeOfUnix) {
  ASSERT_TRUE(isInstalled("arj"));
  ASSERT_TRUE(pack("arj a -r -y ../a.arj ."));
  const ReadArchive read(place.read("a.arj"));
  ASSERT_TRUE(read.isArchive());
  EXPECT_EQ(read.told(), Names{});
  Names expected = files();
  expected.emplace_back("ä ö/ü.txt 1");
  EXPECT_EQ(read.names(), expected);
  struct stat info {};
  ASSERT_EQ(stat(place.path("in/one.txt").c_str(), &info), 0);
  const DosTime written = timeToDos(info.st_mtim.tv_sec);
  for (uint32_t i = 0; i < read.records.count(); ++i) {
    if (read.records.at(i).name != L"one.txt") continue;
    EXPECT_EQ(read.records.at(i).when.date, written.date);
    EXPECT_EQ(read.records.at(i).when.time, written.time);
  }
}

TEST_F(RealArchives, OfLhaAreReadOnTheLevelsThatItWrites) {
  ASSERT_TRUE(isInstalled("jlha"));
  for (const char* level : {"0", "1", "2"}) {
    SCOPED_TRACE(level);
    // Long names are beyond it.
    ASSERT_TRUE(pack("rm -rf sub/l*"));
    ASSERT_TRUE(pack(std::string("jlha a") + level + " ../" + level + ".lzh one.txt sub"));
    const ReadArchive read(place.read(std::string(level) + ".lzh"));
    ASSERT_TRUE(read.isArchive());
    EXPECT_EQ(read.told(), Names{});
    Names listed = read.names();
    std::erase_if(listed, [](const std::string& line) { return line.find("/ ") != line.npos; });
    EXPECT_EQ(listed, (Names{"one.txt 5000", "sub/deeper/d 0", "sub/two words.txt 3"}));
  }
}

TEST_F(RealArchives, OfGzipHaveTheSizeAndTheStoredName) {
  ASSERT_TRUE(isInstalled("gzip"));
  ASSERT_TRUE(pack("(gzip -N -c one.txt > ../other.gz)"));
  const ReadArchive named(place.read("other.gz"), L"other.gz");
  EXPECT_EQ(named.names(), (Names{"one.txt 5000"}));
  ASSERT_TRUE(pack("(gzip -n -c one.txt > ../other.gz)"));
  const ReadArchive unnamed(place.read("other.gz"), L"other.gz");
  EXPECT_EQ(unnamed.names(), (Names{"other 5000"}));
}

// It wants its ending; a line of its table begins with a date and ends with the name.
constexpr char UnaceNames[] =
    "sh -c 'cp \"$0\" \"$0.ace\" && unace v \"$0.ace\" | sed -n \"s/^[0-9.]*|.*| //p\"'";

TEST_F(RealArchives, OfTheGeneratorAreListedAlikeByOthers) {
  struct Row {
    const char* what;
    const char* lister;
    const char* list;
  };
  const Row rows[] = {{"ZIP", "bsdtar", "bsdtar -tf"},
                      {"ZIP", "unzip", "unzip -Z1"},
                      {"RAR 4", "bsdtar", "bsdtar -tf"},
                      {"RAR 4", "lsar", "lsar"},
                      {"RAR 5", "bsdtar", "bsdtar -tf"},
                      {"RAR 5", "lsar", "lsar"},
                      {"LHA level 0", "bsdtar", "bsdtar -tf"},
                      {"LHA level 1", "bsdtar", "bsdtar -tf"},
                      {"LHA level 2", "bsdtar", "bsdtar -tf"},
                      {"LHA level 3", "bsdtar", "bsdtar -tf"},
                      {"LHA level 1", "lsar", "lsar"},
                      {"LHA level 2", "lsar", "lsar"},
                      {"ARJ", "lsar", "lsar"},
                      {"ACE with comments", "unace", UnaceNames},
                      {"TAR", "tar", "tar -tf"},
                      {"TAR", "bsdtar", "bsdtar -tf"},
                      {"TAR, old", "tar", "tar -tf"}};
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.what) + " by " + row.lister);
    ASSERT_TRUE(isInstalled(row.lister));
    const auto& samples = sampleArchives();
    const auto sample = std::find_if(samples.begin(), samples.end(), [&row](const auto& other) {
      return std::string(other.what) == row.what;
    });
    ASSERT_NE(sample, samples.end());
    place.write("sample", sample->make(usualMembers()));
    Names listed = pathsOf(outputOf(std::string(row.list) + " '" + place.path("sample") + "'"));
    // One of them begins with a line of its own.
    std::erase_if(listed, [](const std::string& line) { return line.find(": ") != line.npos; });
    EXPECT_EQ(listed, (Names{"a/b/third", "dir", "dir/second.bin", "empty", "first.txt"}));
  }
}

}  // namespace

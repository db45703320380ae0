#include <atomic>
#include <cerrno>
#include <cstring>

#include "console/key_codes.h"
#include "foundation/system.h"
#include "panel_screen.h"
#include "panels/reader/directory_reader.h"

namespace {

using Names = std::vector<std::string>;

// Makes the opening of one directory fail, or of every one.
class ClosedDirectory {
 public:
  ClosedDirectory(int error, std::string path = "") : error_(error), path_(std::move(path)) {
    System::setHook(onCall, this);
  }
  ~ClosedDirectory() { System::setHook(nullptr, nullptr); }
  ClosedDirectory(const ClosedDirectory&) = delete;
  ClosedDirectory& operator=(const ClosedDirectory&) = delete;

 private:
  static int onCall(const char* call, const char* path, void* self) {
    const auto* closed = static_cast<ClosedDirectory*>(self);
    if (strcmp(call, "openDirectory") != 0) return 0;
    return closed->path_.empty() || closed->path_ == path ? closed->error_ : 0;
  }
  int error_;
  std::string path_;
};

class ReaderMessagesTest : public PanelScreenTest {
 protected:
  // Reads the left panel. The text of the first box, with Enter pressed for it; `boxes` are counted
  // by the keys that they take.
  std::string readWithBoxes(int& boxes) {
    constexpr int Presses = 4;
    std::string seen;
    {
      Beside user([&] {
        if (!waitUntil([&] { return ended_ || shows(") "); })) return;
        seen = screenText();
        for (int i = 0; i < Presses; ++i) queueKey(Key::Enter);
      });
      readDirectory(left());
      ended_ = true;
    }
    boxes = Presses - console->eventCount();
    drainEvents();
    return seen;
  }
  static bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  }

  TempDir dir;
  std::atomic<bool> ended_{false};
};

}  // namespace

TEST_F(ReaderMessagesTest, AnUnreadableDirectoryIsToldWithItsPath) {
  dir.makeDir("locked");
  left().path = dir.wide("locked");
  ClosedDirectory closed(EACCES, dir.path("locked"));
  int boxes = 0;
  const std::string seen = readWithBoxes(boxes);
  EXPECT_TRUE(has(seen, "Permission denied (13)")) << seen;
  EXPECT_TRUE(has(seen, dir.path("locked"))) << seen;
  EXPECT_EQ(1, boxes);
  EXPECT_EQ(dir.path(), bytes(left().path));
  EXPECT_EQ("locked", currentName(left()));
}

TEST_F(ReaderMessagesTest, AChainOfUnreadableParentsIsToldOnce) {
  left().path = dir.wide();
  ClosedDirectory closed(EACCES);
  int boxes = 0;
  const std::string seen = readWithBoxes(boxes);
  EXPECT_TRUE(has(seen, dir.path())) << seen;
  EXPECT_EQ(1, boxes);
  EXPECT_EQ("/", bytes(left().path));
  EXPECT_EQ(EACCES, left().readError);
}

TEST_F(ReaderMessagesTest, AFileInPlaceOfTheDirectoryIsTold) {
  dir.write("file", "");
  left().path = dir.wide("file");
  int boxes = 0;
  EXPECT_TRUE(has(readWithBoxes(boxes), "Not a directory (20)"));
  EXPECT_EQ(1, boxes);
}

TEST_F(ReaderMessagesTest, AnyOtherErrorIsToldAndKept) {
  left().path = dir.wide();
  ClosedDirectory closed(EIO);
  int boxes = 0;
  EXPECT_TRUE(has(readWithBoxes(boxes), "Input/output error (5)"));
  EXPECT_EQ(1, boxes);
  EXPECT_EQ(EIO, left().readError);
  EXPECT_EQ(dir.path(), bytes(left().path));
}

TEST_F(ReaderMessagesTest, AMissingMediumAndAMissingDirectoryAreNotTold) {
  left().path = dir.wide();
  {
    ClosedDirectory closed(Status::NotReady);
    readDirectory(left());  // a box would wait for a key
  }
  EXPECT_EQ(Status::NotReady, left().readError);
  left().path = dir.wide("gone");
  readDirectory(left());
  EXPECT_EQ(0, left().readError);
  EXPECT_EQ((Names{".."}), listed(left()));
}

TEST_F(ReaderMessagesTest, AFastReadShowsNoProgress) {
  for (int i = 0; i < 100; ++i) dir.write("f" + std::to_string(i), "");
  left().path = dir.wide();
  const std::string before = screenText();
  const unsigned long paints = console->paintCount();
  readDirectory(left());
  EXPECT_EQ(101, left().count());
  EXPECT_EQ(before, screenText());
  EXPECT_EQ(paints, console->paintCount());
}

TEST_F(ReaderMessagesTest, ASlowReadShowsHowFarItIsAndTakesTheWindowAway) {
  dir.write("x.zip", "");
  left().path = dir.wide("x.zip");
  auto archive =
      std::make_unique<FakeArchive>(left().path, std::vector<std::string>{"a", "b", "c"}, nullptr);
  bool shown = false;
  int row = -1;
  archive->onNext = [&](size_t n) {
    if (n != 2) return;
    shown = waitToShow("Files: 2");
    row = rowWith("Reading directory:");
  };
  left().archive = std::move(archive);
  readDirectory(left());
  EXPECT_TRUE(shown);
  EXPECT_GE(row, 0);
  EXPECT_FALSE(shows("Reading directory:"));
  EXPECT_EQ((Names{"..", "a", "b", "c"}), listed(left()));
}

TEST_F(ReaderMessagesTest, TheBreakKeyEndsALongRead) {
  dir.write("x.zip", "");
  left().path = dir.wide("x.zip");
  Names files;
  for (int i = 0; i < 1000; ++i) files.push_back(std::to_string(9999 - i));
  auto archive = std::make_unique<FakeArchive>(left().path, files, nullptr);
  archive->onNext = [](size_t n) {
    if (n == 500) requestBreak();
  };
  left().archive = std::move(archive);
  readDirectory(left());
  EXPECT_EQ(502, left().count());
  EXPECT_EQ(0, left().readError);
}

#include <thread>

#include "archive_actions/archive_command_test.h"
#include "archive_actions/archive_work.h"
#include "support/fault_hook.h"

// An edited member goes back into its archive while each system call fails in turn: the edit is in
// the archive, or on the disk where a box has told.

namespace {

constexpr char Edit[] = "an edit of an hour";
constexpr char Other[] = "of another member";

struct Format {
  const char* archive;
  const char* pack;   // what is in the directory
  const char* print;  // the member that is edited
  const char* other;  // the other one; null where there is none

  friend void PrintTo(const Format& format, std::ostream* out) { *out << format.archive; }
};

const Format Formats[] = {
    {"a.zip", "zip -q ../left/a.zip member other", "unzip -p a.zip member", "unzip -p a.zip other"},
    {"a.tar", "tar cf ../left/a.tar member other", "tar -xOf a.tar member | tail -c 18",
     "tar -xOf a.tar other"},
    // The packer would give that name an ending.
    {"plain", "zip -q ../left/plain.zip member other && mv ../left/plain.zip ../left/plain",
     "unzip -p plain member", "unzip -p plain other"},
    {"member.gz", "gzip -c member > ../left/member.gz", "gzip -dc member.gz", nullptr}};

class UpdateFaults : public ArchiveCommandTest, public testing::WithParamInterface<Format> {
 protected:
  void SetUp() override {
    ArchiveCommandTest::SetUp();
    dir.write("in/member", "old text");
    dir.write("in/other", Other);
    pack(GetParam().pack);
    before_ = dir.read(archive());
  }
  static std::string archive() { return std::string("left/") + GetParam().archive; }

  // The archive is open, and its member edited. False when something went wrong.
  bool build();
  void close(Fault& fault);
  void loop(Fault::Reach reach, int error);
  void expectEditSomewhere(const std::string& where);

  std::string before_, asked_;
  std::unique_ptr<OpenArchive> open_;
};

bool UpdateFaults::build() {
  std::filesystem::current_path(dir.path());
  if (!shell(".", "rm -rf left tmp; mkdir left tmp")) return false;
  dir.write(archive(), before_);
  open_ = openArchiveShown(dir.wide(archive()), nullptr).archive;
  if (!open_) return false;
  const Westring path = ArchiveWork::of(static_cast<ArchiveEntryStore&>(*open_)).take(L"member");
  if (path.empty()) return false;
  writeFile(bytes(path), Edit);
  return true;
}

void UpdateFaults::close(Fault& fault) {
  std::atomic<bool> ended{false};
  asked_.clear();
  std::thread user([&] {
    while (!ended) {
      usleep(1000);
      if (!console->events().isAwaited()) continue;
      asked_ += screenText();
      queueKey(Key::Enter);
    }
  });
  // The program's terminal is no file, and what it reads from there depends on the moment.
  System::setPlaceHook(
      [](const System::Call& call, void* context) {
        const bool terminal = *call.path == 0 && isatty(call.directory) != 0;
        return terminal ? 0 : Fault::onCall(call, context);
      },
      &fault);
  open_.reset();
  System::setHook(nullptr, nullptr);
  ended = true;
  user.join();
  drainEvents();
}

void UpdateFaults::expectEditSomewhere(const std::string& where) {
  const Format& format = GetParam();
  if (format.other) {
    EXPECT_EQ(listed(format.other), std::string(Other) + "\n") << where;
  }
  const bool inside = listed(format.print) == std::string(Edit) + "\n";
  for (const std::string& name : names("tmp")) {
    EXPECT_NE(asked_.find(name), std::string::npos) << where << ": left over " << name;
  }
  for (const std::string& name : names("left")) {
    const bool told = asked_.find(name) != std::string::npos;
    EXPECT_TRUE(name == format.archive || told) << where << ": left over " << name;
  }
  if (inside) return;
  bool kept = false;
  for (const std::string& name : names("tmp")) {
    kept |= name.ends_with(".kept") || dir.exists("tmp/" + name + "/member");
    EXPECT_EQ(dir.read("tmp/" + name + "/member"), Edit) << where;
  }
  EXPECT_TRUE(kept) << where << ": the edit is lost";
}

void UpdateFaults::loop(Fault::Reach reach, int error) {
  int hit = 0;
  for (int number = 1;; ++number) {
    ASSERT_TRUE(build());
    Fault fault{number, error, reach};
    close(fault);
    if (fault.call.empty()) break;
    ++hit;
    expectEditSomewhere("call " + std::to_string(number) + " (" + fault.call + ")");
    if (HasFailure()) return;
  }
  printf("%d calls\n", hit);
  EXPECT_GT(hit, 10);
}

TEST_P(UpdateFaults, ACallThatFailsLosesNoEdit) {
  loop(Fault::Reach::Once, EIO);
}

TEST_P(UpdateFaults, ACallThatFailsFromThenOnLosesNoEdit) {
  loop(Fault::Reach::SameName, EACCES);
}

INSTANTIATE_TEST_SUITE_P(, UpdateFaults, testing::ValuesIn(Formats),
                         [](const testing::TestParamInfo<Format>& format) {
                           std::string name = format.param.archive;
                           std::erase(name, '.');
                           return name;
                         });

}  // namespace

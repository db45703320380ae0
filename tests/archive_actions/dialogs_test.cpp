#include "archive_actions/compress_dialog.h"
#include "archive_actions/destination_dialog.h"
#include "filecommands/command_test.h"

namespace {

struct Screen {
  int columns, rows;
};
constexpr Screen Screens[] = {{80, 25}, {100, 43}, {132, 50}};

class ArchiveDialogs : public CommandTest {
 protected:
  static std::string at(const std::string& golden, const Screen& screen) {
    return golden + "_" + std::to_string(screen.columns) + "x" + std::to_string(screen.rows);
  }
  void onEachScreen(const std::function<void(const Screen&)>& show) {
    for (const Screen& screen : Screens) {
      console->setGeometry(screen.columns, screen.rows, Estring(), 0);
      fetchScreenSize();
      for (int y = 0; y < console->rows(); ++y) console->fillCell(0, y, console->columns(), Cell{});
      show(screen);
    }
  }
  static bool anything(const Westring&, ArchiveType) { return true; }
};

}  // namespace

TEST_F(ArchiveDialogs, TheDestinationStandsAsItIsDesigned) {
  onEachScreen([&](const Screen& screen) {
    Westring text = L"/home/user/";
    const Westring line =
        destinationLine(ArchiveAction::Extract, TransferKind::Move, L"letter.txt");
    play({{"Extract and Move", {Key::Esc}, at("archive_destination", screen)}},
         [&] { EXPECT_FALSE(askArchiveDestination(line, text)); });
  });
}

TEST_F(ArchiveDialogs, TheLineTellsWhatIsDoneAndWithWhat) {
  const struct {
    Westring line;
    const char* expected;
  } table[] = {
      {destinationLine(ArchiveAction::Extract, TransferKind::Copy, L"a"), "Extract \"a\" to"},
      {destinationLine(ArchiveAction::Compress, TransferKind::Copy, L"a"), "Compress \"a\" to"},
      {destinationLine(ArchiveAction::Compress, TransferKind::Move, L"a"),
       "Compress and Move \"a\" to"},
      {destinationLine(ArchiveAction::Extract, TransferKind::Copy, 1), "Extract 1 file  to"},
      {destinationLine(ArchiveAction::Extract, TransferKind::Move, 12),
       "Extract and Move 12 files to"},
  };
  for (const auto& row : table) EXPECT_EQ(bytes(row.line), row.expected);
  const Westring longName(std::wstring(60, L'n').c_str());
  EXPECT_EQ(destinationLine(ArchiveAction::Extract, TransferKind::Copy, longName).length(),
            static_cast<int>(std::string("Extract \"\" to").size()) + 50);
}

TEST_F(ArchiveDialogs, BlanksAroundTheDestinationGo) {
  Westring text = L"  /somewhere ";
  play({{"Extract", {Key::Enter}}}, [&] {
    EXPECT_TRUE(askArchiveDestination(
        destinationLine(ArchiveAction::Extract, TransferKind::Copy, 2), text));
  });
  EXPECT_EQ(bytes(text), "/somewhere");
}

TEST_F(ArchiveDialogs, TheDestinationKeepsNoHistory) {
  Westring text = L"/somewhere";
  for (int i = 0; i < 2; ++i) {
    play({{"Extract", {Key::Enter}}},
         [&] { EXPECT_TRUE(askArchiveDestination(L"Extract", text)); });
  }
  for (int number = 0; number < 12; ++number) {
    EXPECT_EQ(fieldHistory(static_cast<FieldHistory>(number))->count(), 0) << number;
  }
}

TEST_F(ArchiveDialogs, F10TakesADirectoryOfTheTree) {
  class Chooser : public DirectoryTree {
   public:
    Chooser() { directoryTree().connect(*this); }
    ~Chooser() override { directoryTree().disconnect(); }
    Westring choose(Panel&, TreeWindowUse use) override {
      EXPECT_EQ(use, TreeWindowUse::Field);
      return chosen;
    }
    Westring chosen = L"/from/the/tree";
  } chooser;
  Westring text = L"/typed";
  play({{"Extract", {Key::F10}}, {"/from/the/tree", {Key::Enter}}},
       [&] { EXPECT_TRUE(askArchiveDestination(L"Extract", text)); });
  EXPECT_EQ(bytes(text), "/from/the/tree");
  chooser.chosen = L"";
  play({{"Extract", {Key::F10, Key::Enter}}},
       [&] { EXPECT_TRUE(askArchiveDestination(L"Extract", text)); });
  EXPECT_EQ(bytes(text), "/from/the/tree");
}

TEST_F(ArchiveDialogs, TheNewArchiveStandsAsItIsDesigned) {
  onEachScreen([&](const Screen& screen) {
    Westring name = L"/home/user/letters";
    ArchiveType type{};
    play({{"Compress Files", {Key::Esc}, at("new_archive", screen)}},
         [&] { EXPECT_FALSE(askNewArchive(name, type, anything)); });
  });
}

TEST_F(ArchiveDialogs, TheTypeChosenLastIsTheFirstOneNextTime) {
  Westring name = L"letters";
  ArchiveType type = ArchiveType::Zip;
  // Tab goes to the types; TAR stands last.
  play({{"Compress Files", {Key::Tab, Key::Up, Key::Enter}}},
       [&] { EXPECT_TRUE(askNewArchive(name, type, anything)); });
  EXPECT_EQ(type, ArchiveType::Tar);
  type = ArchiveType::Zip;
  play({{"Compress Files", {Key::Enter}}},
       [&] { EXPECT_TRUE(askNewArchive(name, type, anything)); });
  EXPECT_EQ(type, ArchiveType::Tar);
  EXPECT_EQ(fieldHistory(FieldHistory::Archive)->count(), 1);
}

TEST_F(ArchiveDialogs, TheDialogStaysWhileTheArchiveIsRefused) {
  Westring name = L"x";
  ArchiveType type{};
  int asked = 0;
  play({{"Compress Files", {Key::Enter, Key::Enter}}}, [&] {
    EXPECT_TRUE(
        askNewArchive(name, type, [&](const Westring&, ArchiveType) { return ++asked == 2; }));
  });
  EXPECT_EQ(asked, 2);
}

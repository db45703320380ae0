#include "filecommands/attribute_command.h"

#include "filecommands/command_test.h"
#include "foundation/users.h"
#include "support/fault_hook.h"

namespace {

class AttributeCommandTest : public CommandTest {
 protected:
  void SetUp() override {
    CommandTest::SetUp();
    for (const auto& [name, mode] : {std::pair{"a", 0640}, {"b", 0755}, {"c", 0604}}) {
      file(std::string("left/") + name);
      dir.chmod(std::string("left/") + name, static_cast<mode_t>(mode));
    }
  }
  void attributes(const std::vector<Step>& steps) {
    play(steps, [&] { attributeCommand(left()); });
  }
  mode_t mode(const std::string& name) { return dir.mode("left/" + name); }
  static Step dialog(std::vector<Key::Code> keys, const std::string& golden = "") {
    return {"File  Attributes", std::move(keys), golden};
  }
};

constexpr Key::Code One = '1', Four = '4', Five = '5', Six = '6', Seven = '7', Zero = '0';
constexpr char Denied[] = "Operation not permitted (1)";

}  // namespace

TEST_F(AttributeCommandTest, OneFileStartsAsItIsAndThreeDigitsSetItsPermissions) {
  show("a");
  attributes({dialog({Seven, Five, Five, Key::Enter}, "attributes_one")});
  EXPECT_EQ(mode("a"), 0755U);
  EXPECT_EQ(entryNamed(left(), "a")->mode & 07777, 0755);
  EXPECT_EQ(screenText(), before_);
}

TEST_F(AttributeCommandTest, EachDigitSetsTheBoxesOfItsRowAndGoesOnToTheNext) {
  show("a");
  // The cursor moves to the last box of the row first: the whole row is set all the same.
  attributes({dialog({Key::Right, Key::Right, Six, Zero, One, Key::Enter})});
  EXPECT_EQ(mode("a"), 0601U);
}

TEST_F(AttributeCommandTest, AfterTheThirdDigitTheFocusIsOnOk) {
  show("b");
  // Space presses the button that has the focus.
  attributes({dialog({Four, Four, Four, Key::Space})});
  EXPECT_EQ(mode("b"), 0444U);
}

TEST_F(AttributeCommandTest, SpecialBitsStandBesideTheirRows) {
  show("b");
  const std::vector<Key::Code> special{Key::Right, Key::Right, Key::Right, Key::Space, Key::Tab};
  std::vector<Key::Code> keys;
  for (int row = 0; row < 3; ++row) keys.insert(keys.end(), special.begin(), special.end());
  keys.push_back(Key::Enter);
  attributes({dialog(keys)});
  EXPECT_EQ(mode("b"), 07755U);
}

TEST_F(AttributeCommandTest, WithTagsABoxThatIsLeftKeepsTheBitDifferentInEachFile) {
  show("a");
  for (const char* name : {"a", "b", "c"}) tag(name);
  // From "leave" Space goes to "set", and from there to "clear".
  attributes(
      {dialog({Key::Space, Key::Tab, Key::Space, Key::Space, Key::Enter}, "attributes_tagged")});
  EXPECT_EQ(mode("a"), 0600U);
  EXPECT_EQ(mode("b"), 0715U);
  EXPECT_EQ(mode("c"), 0604U);
}

TEST_F(AttributeCommandTest, WithTagsADigitSetsAndClears) {
  show("a");
  for (const char* name : {"a", "b"}) tag(name);
  attributes({dialog({Key::Tab, Five, Key::Enter})});
  EXPECT_EQ(mode("a"), 0650U);
  EXPECT_EQ(mode("b"), 0755U);
  EXPECT_EQ(mode("c"), 0604U);
}

TEST_F(AttributeCommandTest, EscChangesNothing) {
  show("a");
  attributes({dialog({Seven, Seven, Seven, Key::Esc})});
  EXPECT_EQ(mode("a"), 0640U);
}

TEST_F(AttributeCommandTest, UnknownNamesAreToldAndTheDialogStays) {
  show("a");
  const std::vector<Key::Code> toOwner(3, Key::Tab);
  attributes({{"File  Attributes", toOwner},
              {"Owner", {Key::Enter}, "", "nobody there"},
              {"Invalid user", {Key::Enter}, "attributes_invalid_user"},
              {"File  Attributes", {Key::Home, Key::CtrlDelete, Key::CtrlDelete, Key::Tab}},
              {"Group", {Key::Enter}, "", "no such group"},
              {"Invalid group", {Key::Enter}},
              {"File  Attributes", {Key::Esc}}});
  EXPECT_EQ(mode("a"), 0640U);
}

TEST_F(AttributeCommandTest, ANumberWithoutANameIsShownAndTaken) {
  ASSERT_TRUE(isRoot()) << "only root gives files away";
  show("a");
  attributes({{"File  Attributes", {Key::Tab, Key::Tab, Key::Tab}},
              {"Owner", {Key::Tab}, "", "54321"},
              {"Group", {Key::Enter}, "", "54322"}});
  EXPECT_EQ(statusOf(dir.path("left/a")).st_uid, 54321U);
  EXPECT_EQ(statusOf(dir.path("left/a")).st_gid, 54322U);
  EXPECT_EQ(entryNamed(left(), "a")->owner, 54321U);
  attributes({{"54321", {Key::Enter}}});
  EXPECT_EQ(statusOf(dir.path("left/a")).st_uid, 54321U);
}

TEST_F(AttributeCommandTest, AFailureOffersRetrySkipAndCancel) {
  show("a");
  for (const char* name : {"a", "b", "c"}) tag(name);
  {
    const FaultHook fault("fchmod", EPERM);
    attributes({dialog({Zero, Zero, Zero, Key::Enter}),
                {Denied, {Key::Code(Answer::Retry)}, "attributes_error"},
                {Denied, {Key::Code(Answer::Skip)}},
                {dir.path("left/b").substr(20), {Key::Esc}},
                {"File  Attributes", {Key::Esc}}});
  }
  EXPECT_EQ(mode("a"), 0640U);
  EXPECT_EQ(mode("b"), 0755U);
}

TEST_F(AttributeCommandTest, SkipGoesOnWithTheNextFile) {
  file("left/a2");
  show("a");
  for (const char* name : {"a", "a2", "b"}) tag(name);
  ASSERT_EQ(unlink(dir.path("left/a2").c_str()), 0);
  attributes({dialog({Seven, Zero, Zero, Key::Enter}),
              {"No such file or directory (2)", {Key::Code(Answer::Skip)}}});
  EXPECT_EQ(mode("a"), 0700U);
  EXPECT_EQ(mode("b"), 0700U);
}

TEST_F(AttributeCommandTest, TheTreesDirectoryIsChanged) {
  show("a");
  left().style = PanelStyle::Tree;
  const OnePathTree tree(dir.wide("right"));
  attributes({{dir.path("right").substr(dir.path().size() - 6), {Seven, Zero, Zero, Key::Enter}}});
  EXPECT_EQ(dir.mode("right"), 0700U);
}

TEST_F(AttributeCommandTest, TheDialogFitsALargeScreen) {
  console->setGeometry(132, 50, Estring(), 0);
  fetchScreenSize();
  show("a");
  attributes({dialog({Key::Esc}, "attributes_large")});
}

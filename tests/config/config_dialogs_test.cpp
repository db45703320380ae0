// The dialogs of the configuration on the screen.

#include <algorithm>
#include <functional>
#include <thread>

#include "commander/help_probe.h"
#include "config/dialogs/colours_dialog.h"
#include "config/dialogs/configuration_dialog.h"
#include "config/dialogs/confirmations_dialog.h"
#include "config/dialogs/run_with_help.h"
#include "foundation/utf8.h"
#include "options/colours.h"
#include "options/option_snapshot.h"
#include "support/console_test.h"
#include "support/files.h"

namespace {

class ConfigDialogs : public ConsoleTest {
 protected:
  void TearDown() override {
    GlobalOptions::setDefaultOptions();
    defaultColours();
    ConsoleTest::TearDown();
  }

  // Runs the dialog; once it shows, its picture is compared, and then the keys are struck.
  void play(const std::string& title, const std::string& golden, const std::vector<Key::Code>& keys,
            const std::function<void()>& dialog, const std::string& typed = "") {
    const std::string before = screenText();
    std::thread user([&] {
      EXPECT_TRUE(waitUntil([&] { return screenText().find(title) != std::string::npos; }));
      if (!golden.empty()) {
        const std::string expected =
            readFile(goldenPath(std::source_location::current().file_name(), golden));
        waitUntil([&] { return screenText() == expected; });
        expectGoldenText(golden, screenText());
        if (const char* pictures = getenv("TD_PICTURES")) {
          console->savePicture((std::string(pictures) + "/" + golden + ".png").c_str());
        }
      }
      queueText(typed);
      for (const Key::Code key : keys) queueKey(key);
    });
    dialog();
    user.join();
    EXPECT_EQ(screenText(), before);
    EXPECT_EQ(console->eventCount(), 0);
  }
  void colours(const std::vector<Key::Code>& keys, const std::string& golden = "") {
    play("TD/X Colours", golden, keys, [this] { answer = coloursDialog(); });
  }
  void configuration(const std::vector<Key::Code>& keys, const std::string& golden = "",
                     const std::string& typed = "") {
    play(
        " Configuration ", golden, keys,
        [this] { kept = configurationDialog() == ConfigurationAnswer::Kept; }, typed);
  }
  void confirmations(const std::vector<Key::Code>& keys, const std::string& golden = "") {
    play(" Confirmations ", golden, keys, confirmationsDialog);
  }
  static std::vector<Key::Code> tabs(int count, std::vector<Key::Code> rest) {
    rest.insert(rest.begin(), static_cast<size_t>(count), Key::Tab);
    return rest;
  }

  int answer = 7;
  bool kept = false;
};

}  // namespace

// ---- colours

TEST_F(ConfigDialogs, CancelPutsAllEighteenColoursBackAlsoThoseThatWereStepped) {
  for (int i = 0; i < ColourCount; ++i) colourTable[i] = static_cast<unsigned char>(0x10 + i);
  std::vector<Key::Code> keys;
  for (int i = 0; i < ColourCount; ++i) {
    keys.insert(keys.end(), {Key::Code('f'), Key::Code('B'), Key::Down});
  }
  keys.push_back(Key::Esc);
  colours(keys);
  EXPECT_EQ(answer, -1);
  for (int i = 0; i < ColourCount; ++i) EXPECT_EQ(colourTable[i], 0x10 + i) << i;
}

TEST_F(ConfigDialogs, OkKeepsTheColoursAndOfTheQuickKeyOnlyTheForeground) {
  colourTable[static_cast<int>(Colour::MenuQuickKey)] = 0x5E;
  colours({Key::Code('f'), Key::Down, Key::Code('b'), Key::Enter}, "colours");
  EXPECT_EQ(answer, 0);
  EXPECT_EQ(colourOf(Colour::Panel), 0x1C);
  EXPECT_EQ(colourOf(Colour::Highlight), 0x40);
  EXPECT_EQ(colourOf(Colour::MenuQuickKey), 0x0E);
}

// ---- the configuration

TEST_F(ConfigDialogs, EachOptionHasItsPlace) {
  GlobalOptions::Viewer = L"less";
  GlobalOptions::PathAppend = L"/opt/bin";
  GlobalOptions::NumLock = true;
  GlobalOptions::Lines = 43;
  GlobalOptions::ScrollDelay = 100;
  GlobalOptions::TimeMode = 24;
  configuration({Key::Esc}, "configuration");
  EXPECT_FALSE(kept);
}

TEST_F(ConfigDialogs, CancelPutsEveryOptionBack) {
  GlobalOptions::Viewer = L"less";
  GlobalOptions::Lines = 30;
  std::vector<Key::Code> keys = tabs(10, {Key::Space, Key::Tab, Key::Code('4'), Key::Esc});
  configuration(keys, "", "more");
  EXPECT_FALSE(kept);
  EXPECT_EQ(GlobalOptions::Viewer, L"less");
  EXPECT_EQ(GlobalOptions::Lines, 30);
  EXPECT_FALSE(GlobalOptions::AutoSave);
}

TEST_F(ConfigDialogs, OkKeepsAndTrimsTheTenTexts) {
  using namespace GlobalOptions;
  const std::vector<Westring*> texts{&Viewer,
                                     &Viewer2,
                                     &Editor,
                                     &Editor2,
                                     &::GlobalOptions::Left,
                                     &::GlobalOptions::Right,
                                     &Background,
                                     &TreeDir,
                                     &CaseFilter,
                                     &PathAppend};
  for (Westring* text : texts) *text = L"  a b  ";
  configuration({Key::Enter});
  EXPECT_TRUE(kept);
  for (const Westring* text : texts) EXPECT_STREQ(toUtf8(*text).data(), "a b");
}

TEST_F(ConfigDialogs, SwitchesNumbersAndTheTimeModeAreEditedInPlace) {
  // The switches are one group, and so are the hours.
  configuration(
      tabs(10, {Key::Space, Key::Down, Key::Down, Key::Down, Key::Space, Key::Tab, Key::Code('5'),
                Key::Code('0'), Key::Tab, Key::Code('9'), Key::Tab, Key::Code('3'), Key::Tab,
                Key::Code('2'), Key::Tab, Key::Down, Key::Enter}));
  EXPECT_TRUE(kept);
  EXPECT_TRUE(GlobalOptions::AutoSave);
  EXPECT_TRUE(GlobalOptions::EscPanelSwitch);
  EXPECT_FALSE(GlobalOptions::NumLock);
  EXPECT_EQ(GlobalOptions::Lines, 50);
  EXPECT_EQ(GlobalOptions::Columns, 9);
  EXPECT_EQ(GlobalOptions::Saver, 3);
  EXPECT_EQ(GlobalOptions::ScrollDelay, 2);
  EXPECT_EQ(GlobalOptions::TimeMode, 24);
}

TEST_F(ConfigDialogs, TheOptionKeepsALineCountThatNoScreenHas) {
  configuration(tabs(11, {Key::Code('9'), Key::Code('9'), Key::Code('9'), Key::Enter}));
  EXPECT_EQ(GlobalOptions::Lines, 999);
}

TEST_F(ConfigDialogs, ALongValueSurvivesUnlessItIsEdited) {
  const Westring longValue(L'x', 700);
  GlobalOptions::Viewer = longValue;
  configuration({Key::Enter});
  EXPECT_EQ(GlobalOptions::Viewer.length(), 700);
}

TEST_F(ConfigDialogs, HelpShowsTheTopicAndTheDialogGoesOn) {
  std::vector<HelpTopic> topics;
  const HelpProbe help([&](HelpTopic topic) { topics.push_back(topic); });
  configuration({Key::F1, Key::Esc});
  confirmations({Key::F1, Key::F1, Key::Esc});
  EXPECT_EQ(topics, (std::vector<HelpTopic>{HelpTopic::Configuration, HelpTopic::Confirmations,
                                            HelpTopic::Confirmations}));
}

// ---- the confirmations

TEST_F(ConfigDialogs, ACheckedBoxMeansThatTheQuestionIsAsked) {
  GlobalOptions::Confirmations = ConfirmationOff::DeleteTagged | ConfirmationOff::TypedYes;
  confirmations({Key::Space, Key::Down, Key::Space, Key::Enter}, "confirmations");
  EXPECT_EQ(GlobalOptions::Confirmations, ConfirmationOff::Delete | ConfirmationOff::TypedYes);
}

TEST_F(ConfigDialogs, EscLeavesTheQuestionsAsTheyWere) {
  GlobalOptions::Confirmations = ConfirmationOff::Quit;
  confirmations({Key::Space, Key::Down, Key::Space, Key::Esc});
  EXPECT_EQ(GlobalOptions::Confirmations, ConfirmationOff::Quit);
}

// ---- a large screen

TEST_F(ConfigDialogs, AllOfThemFitALargeScreen) {
  console->setGeometry(132, 50, Estring(), 0);
  colours({Key::Esc}, "colours_large");
  configuration({Key::Esc}, "configuration_large");
  confirmations({Key::Esc}, "confirmations_large");
}

TEST(OptionSnapshot, GivesEveryOptionBack) {
  GlobalOptions::setDefaultOptions();
  const OptionSnapshot before;
  GlobalOptions::Viewer = L"x";
  GlobalOptions::CaseMod = "uu";
  GlobalOptions::Hidden = true;
  GlobalOptions::Lines = 5;
  GlobalOptions::CmdChar = '@';
  before.restore();
  EXPECT_TRUE(GlobalOptions::Viewer.empty());
  EXPECT_STREQ(GlobalOptions::CaseMod.data(), "ll");
  EXPECT_FALSE(GlobalOptions::Hidden);
  EXPECT_EQ(GlobalOptions::Lines, 0);
  EXPECT_EQ(GlobalOptions::CmdChar, '!');
}

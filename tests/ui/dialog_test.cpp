#include "ui/dialog.h"

#include <thread>

#include "options/colours.h"
#include "support/end_request.h"
#include "support/turkish_locale.h"
#include "ui/ui_test.h"

namespace {

class DialogTest : public UiTest {};

constexpr Key::Code AltI{0x10017};

// Counts what reaches it; takes no focus of its own accord.
class Probe : public DialogElement {
 public:
  Probe(Dialog& dialog, int x, int y, Group newGroup) : DialogElement(dialog, x, y, newGroup) {}

  bool handleMessage(const Message& message) override {
    messages.push_back(message);
    return handles;
  }
  void activate() override {
    ++activations;
    DialogElement::activate();
  }
  ElementType type() const override { return ElementType::StaticText; }
  void focusNotify(Focus focus) override { notifications += focus == Focus::Gained ? "+" : "-"; }
  void draw() override { ++draws; }
  void commit() override { ++commits; }

  bool handles = false;
  std::vector<Message> messages;
  int activations = 0;
  int draws = 0;
  int commits = 0;
  std::string notifications;
};

Probe* addProbe(Dialog& dialog, Group newGroup, int x = 0, int y = 0) {
  auto probe = std::make_unique<Probe>(dialog, x, y, newGroup);
  Probe* raw = probe.get();
  dialog.add(std::move(probe));
  return raw;
}

class GuardedDialog : public TestDialog {
 public:
  bool canChangeFocus(int oldIndex, int& newIndex) override {
    asked.push_back({oldIndex, newIndex});
    if (redirectTo >= 0) newIndex = redirectTo;
    return allow;
  }
  void focusChanged() override { ++changes; }

  bool allow = true;
  int redirectTo = -1;
  int changes = 0;
  std::vector<std::pair<int, int>> asked;
};

}  // namespace

TEST_F(DialogTest, TheFrameHasTheDialogsColour) {
  Dialog dialog(10, 5, 30, 10, 0x4F);
  EXPECT_EQ(attrAt(10, 5), 0x4F);
  EXPECT_EQ(attrAt(11, 6), 0x4F);
  EXPECT_EQ(dialog.textAttr(), 0x4F);
  EXPECT_EQ(dialog.fieldAttr(), colourOf(Colour::InputFields));
  EXPECT_EQ(dialog.focusAttr(), colourOf(Colour::InputFields));
}

TEST_F(DialogTest, EnterWithoutButtonsEndsWith13) {
  Dialog dialog(-1, -2, 40, 10, Grey);
  bool value = false;
  dialog.addCheck(1, 1, Group::New, &value, "Check");
  queueKey(Key::Enter);
  EXPECT_EQ(dialog.run(), Key::Enter);
}

TEST_F(DialogTest, EnterEndsWithTheFirstButtonsCode) {
  Dialog dialog(-1, -2, 40, 10, Grey);
  bool value = false;
  dialog.addCheck(1, 1, Group::New, &value, "Check");
  dialog.addButton(1, 3, Group::New, 'g', "Go");
  dialog.addButton(9, 3, Group::Same, 'h', "Halt");
  queueKey(Key::Enter);
  EXPECT_EQ(dialog.run(), 'g');
}

TEST_F(DialogTest, ADialogWithoutElementsEndsWithEscOnly) {
  Dialog dialog(-1, -2, 40, 10, Grey);
  queueKeys({'x', Key::F1, Key::Tab, Key::Down, Key::Esc});
  EXPECT_EQ(dialog.run(), Key::Esc);
  EXPECT_EQ(console->eventCount(), 0);
}

TEST_F(DialogTest, RunningTwiceStartsWithAFreshExitCode) {
  Dialog dialog(-1, -2, 40, 10, Grey);
  dialog.addOkCancel(-1, -1, Group::New);
  queueKey(Key::Esc);
  EXPECT_EQ(dialog.run(), Key::Esc);
  queueKey(Key::Enter);
  EXPECT_EQ(dialog.run(), Key::Enter);
}

TEST_F(DialogTest, ShiftChangesAndKeyZeroMeanNothing) {
  Dialog dialog(-1, -2, 40, 10, Grey);
  Probe* probe = addProbe(dialog, Group::New);
  queueKeys({Key::ShiftChanged, Key::NoKey});
  queueClick(40, 12, 3);  // a middle click comes as key 0
  queueKey(Key::Enter);
  dialog.run();
  ASSERT_EQ(probe->messages.size(), 1U);
  EXPECT_EQ(probe->messages[0].key, Key::Enter);
  EXPECT_EQ(probe->activations, 0);
}

TEST_F(DialogTest, ARightClickAnywhereIsEnter) {
  for (auto [x, y] : {std::pair{0, 0}, std::pair{40, 12}}) {
    Dialog dialog(-1, -2, 40, 10, Grey);
    dialog.addButton(1, 3, Group::New, 'g', "Go");
    queueClick(x, y, 2);
    EXPECT_EQ(dialog.run(), 'g');
  }
  Dialog plain(-1, -2, 40, 10, Grey);
  queueClick(0, 0, 2);
  EXPECT_EQ(plain.run(), Key::Enter);
}

TEST_F(DialogTest, ARightReleaseWithoutItsPressDoesNothing) {
  Dialog dialog(-1, -2, 40, 10, Grey);
  queueMouse(EventKind::Release, 5, 5, 2);
  queueKey(Key::Esc);
  EXPECT_EQ(dialog.run(), Key::Esc);
}

TEST_F(DialogTest, APressAndReleaseOutsideCancel) {
  Dialog dialog(-1, -2, 40, 10, Grey);
  dialog.addOkCancel(-1, -1, Group::New);
  queueClick(0, 0);
  EXPECT_EQ(dialog.run(), Key::Esc);
}

TEST_F(DialogTest, APressInsideAndAReleaseOutsideDontCancel) {
  TestDialog dialog;
  dialog.addOkCancel(-1, -1, Group::New);
  queueMouse(EventKind::Press, 40, 12);
  queueMouse(EventKind::Release, 0, 0);
  EXPECT_EQ(dialog.runQueued(), TestDialog::Stop);
}

TEST_F(DialogTest, APressOutsideAndAReleaseInsideDontCancel) {
  TestDialog dialog;
  queueMouse(EventKind::Press, 0, 0);
  queueMouse(EventKind::Release, 40, 12);
  EXPECT_EQ(dialog.runQueued(), TestDialog::Stop);
}

TEST_F(DialogTest, APressOutsideCountsThroughAMoveOfTheHand) {
  TestDialog dialog;
  queueMouse(EventKind::Press, 0, 0);
  queueMouse(EventKind::Drag, 1, 0);
  queueMouse(EventKind::Release, 1, 0);
  EXPECT_EQ(dialog.runQueued(), Key::Esc);
}

TEST_F(DialogTest, AReleaseOutsideFollowsItsPressDirectly) {
  TestDialog dialog;
  queueMouse(EventKind::Press, 0, 0);
  queueKey('x');
  queueMouse(EventKind::Release, 0, 0);
  EXPECT_EQ(dialog.runQueued(), TestDialog::Stop);
}

// Otherwise the double click that opened the dialog would press what came up under the pointer.
TEST_F(DialogTest, ALeftReleaseWithoutItsPressPressesNothing) {
  TestDialog dialog;
  dialog.addButton(1, 1, Group::New, 'g', "Go");
  queueMouse(EventKind::Release, dialog.originX() + 2, dialog.originY() + 1);
  queueMouse(EventKind::Release, 0, 0);
  EXPECT_EQ(dialog.runQueued(), TestDialog::Stop);
}

TEST_F(DialogTest, MousePositionsArriveInInteriorCoordinates) {
  TestDialog dialog;
  Probe* probe = addProbe(dialog, Group::New);
  queueMouse(EventKind::Press, dialog.originX() + 7, dialog.originY() + 3);
  dialog.runQueued();
  ASSERT_GE(probe->messages.size(), 1U);
  EXPECT_EQ(probe->messages[0].kind, MessageKind::LeftPress);
  EXPECT_EQ(probe->messages[0].x, 7);
  EXPECT_EQ(probe->messages[0].y, 3);
}

TEST_F(DialogTest, TheMouseIsOfferedFromTheFirstElementUntilOneTakesIt) {
  TestDialog dialog;
  Probe* first = addProbe(dialog, Group::New);
  Probe* second = addProbe(dialog, Group::New);
  Probe* third = addProbe(dialog, Group::New);
  second->handles = true;
  for (EventKind kind :
       {EventKind::Press, EventKind::DoubleClick, EventKind::Drag, EventKind::Release}) {
    queueMouse(kind, 40, 12);
  }
  queueWheel(1);
  dialog.runQueued();
  EXPECT_EQ(first->messages.size(), 6U);  // and the key that ended it
  ASSERT_EQ(second->messages.size(), 5U);
  EXPECT_EQ(third->messages.size(), 0U);
  EXPECT_EQ(second->messages[1].kind, MessageKind::LeftDoubleClick);
  EXPECT_EQ(second->messages[2].kind, MessageKind::LeftDrag);
  EXPECT_EQ(second->messages[4].kind, MessageKind::Wheel);
  EXPECT_EQ(second->messages[4].value, 1);
}

TEST_F(DialogTest, ADisabledElementGetsNoMouse) {
  TestDialog dialog;
  addProbe(dialog, Group::New);
  Probe* disabled = addProbe(dialog, Group::New);
  disabled->enabled = false;
  queueClick(40, 12);
  dialog.runQueued();
  EXPECT_EQ(disabled->messages.size(), 0U);
}

TEST_F(DialogTest, RightPressAndRightDragReachNoElement) {
  TestDialog dialog;
  Probe* probe = addProbe(dialog, Group::New);
  queueMouse(EventKind::Drag, 40, 12, 2);
  queueMouse(EventKind::Press, 40, 12, 2);
  dialog.runQueued();
  EXPECT_EQ(probe->messages.size(), 1U);
}

TEST_F(DialogTest, TabGoesToTheNextGroupAndToItsLastFocus) {
  TestDialog dialog;
  addProbe(dialog, Group::New);   // 0
  addProbe(dialog, Group::New);   // 1
  addProbe(dialog, Group::Same);  // 2
  addProbe(dialog, Group::Same);  // 3
  dialog.runKeys({Key::Tab, Key::Right});
  EXPECT_EQ(dialog.focus(), 2);
  dialog.runKeys({Key::Tab});
  EXPECT_EQ(dialog.focus(), 0);
  dialog.runKeys({Key::Tab});
  EXPECT_EQ(dialog.focus(), 2);
  dialog.runKeys({Key::ShiftTab});
  EXPECT_EQ(dialog.focus(), 0);
  dialog.runKeys({Key::ShiftTab});
  EXPECT_EQ(dialog.focus(), 2);
}

TEST_F(DialogTest, TabToAGroupWhoseLastFocusIsDisabledGoesOnInItsDirection) {
  for (const auto& [key, reached] : {std::pair{Key::Tab, 3}, std::pair{Key::ShiftTab, 1}}) {
    TestDialog dialog;
    addProbe(dialog, Group::New);
    addProbe(dialog, Group::New);
    Probe* last = addProbe(dialog, Group::Same);
    addProbe(dialog, Group::Same);
    dialog.runKeys({Key::Tab, Key::Right, Key::Tab});
    ASSERT_EQ(dialog.focus(), 0);
    last->enabled = false;
    dialog.runKeys({key});
    EXPECT_EQ(dialog.focus(), reached);
  }
}

TEST_F(DialogTest, TabToAHeadWithATabStopTakesTheElementReached) {
  TestDialog dialog;
  addProbe(dialog, Group::New);
  addProbe(dialog, Group::New)->tabStop = true;
  addProbe(dialog, Group::Same);
  dialog.setFocus(2);
  dialog.setFocus(0);
  dialog.runKeys({Key::Tab});
  EXPECT_EQ(dialog.focus(), 1);
}

TEST_F(DialogTest, WithButtonsAloneTabGoesToTheNextOne) {
  Dialog dialog(-1, -2, 40, 10, Grey);
  dialog.addButtons(-1, -1, Group::New, {{'a', "A"}, {'b', "B"}, {'c', "C"}});
  queueKeys({Key::Tab, Key::Enter});
  EXPECT_EQ(dialog.run(), 'b');
  queueKeys({Key::Tab, Key::Tab, Key::Enter});
  EXPECT_EQ(dialog.run(), 'a') << "behind the last comes the first";
  queueKeys({Key::ShiftTab, Key::Enter});
  EXPECT_EQ(dialog.run(), 'c');
}

TEST_F(DialogTest, BesideAnotherGroupTabLeavesTheButtons) {
  Dialog dialog(-1, -2, 40, 10, Grey);
  Westring text;
  const int field = dialog.addString(1, 1, Group::New, &text, 10, 10);
  const int ok = dialog.addOkCancel(-1, -1, Group::New);
  dialog.addExitKey(TestDialog::Stop);
  queueKeys({Key::Tab, TestDialog::Stop});
  dialog.run();
  EXPECT_EQ(dialog.focus(), ok);
  queueKeys({Key::Tab, TestDialog::Stop});
  dialog.run();
  EXPECT_EQ(dialog.focus(), field);
}

TEST_F(DialogTest, WithOneGroupThatHoldsNoButtonsTabStaysWhereItIs) {
  TestDialog dialog;
  addProbe(dialog, Group::New);
  addProbe(dialog, Group::Same);
  dialog.runKeys({Key::Down, Key::Tab});
  EXPECT_EQ(dialog.focus(), 1);
}

TEST_F(DialogTest, ArrowsMoveInTheGroupAndWrap) {
  TestDialog dialog;
  addProbe(dialog, Group::New);   // 0
  addProbe(dialog, Group::Same);  // 1
  addProbe(dialog, Group::Same);  // 2
  addProbe(dialog, Group::New);   // 3
  dialog.runKeys({Key::Up});
  EXPECT_EQ(dialog.focus(), 2);
  dialog.runKeys({Key::Down});
  EXPECT_EQ(dialog.focus(), 0);
  dialog.runKeys({Key::Right});
  EXPECT_EQ(dialog.focus(), 1);
  dialog.runKeys({Key::Left});
  EXPECT_EQ(dialog.focus(), 0);
}

TEST_F(DialogTest, ArrowsPassDisabledMembers) {
  TestDialog dialog;
  addProbe(dialog, Group::New);
  addProbe(dialog, Group::Same)->enabled = false;
  addProbe(dialog, Group::Same);
  dialog.runKeys({Key::Down});
  EXPECT_EQ(dialog.focus(), 2);
  dialog.runKeys({Key::Down});
  EXPECT_EQ(dialog.focus(), 0);
}

TEST_F(DialogTest, TextNeverStartsAGroupButAtTheStart) {
  TestDialog dialog;
  dialog.addText(1, 0, "Label");                       // 0, head of the first group
  const Probe* field = addProbe(dialog, Group::Same);  // 1
  const Probe* other = addProbe(dialog, Group::New);   // 2
  dialog.addText(1, 2, "Another");                     // 3
  EXPECT_EQ(field->group, 0);
  EXPECT_EQ(other->group, 2);
  EXPECT_EQ(dialog.element(3)->group, 2);
  EXPECT_EQ(dialog.addExitKey(Key::F2), 4);
  EXPECT_EQ(dialog.element(4)->group, 2);
  EXPECT_FALSE(dialog.element(3)->tabStop);
}

TEST_F(DialogTest, TheFirstEnabledElementHasTheFocusAtTheStart) {
  TestDialog dialog;
  dialog.addText(1, 0, "Label");
  addProbe(dialog, Group::Same);
  dialog.runQueued();
  EXPECT_EQ(dialog.focus(), 1);
}

TEST_F(DialogTest, FromAGroupOfTextOnlyTheFocusGoesToTheNextGroup) {
  TestDialog dialog;
  dialog.addText(1, 0, "Label");
  dialog.addText(1, 1, "Label");
  addProbe(dialog, Group::New);
  dialog.runQueued();
  EXPECT_EQ(dialog.focus(), 2);
}

TEST_F(DialogTest, TheLabelsHotCharacterLeadsToTheFieldBehindIt) {
  TestDialog dialog;
  addProbe(dialog, Group::New);                 // 0
  auto heading = addProbe(dialog, Group::New);  // 1: a label at the head of its group
  heading->enabled = false;
  addProbe(dialog, Group::Same);  // 2
  const char hot[] = {0, 'i', 0};
  dialog.setHotChars(hot, 3);
  dialog.runKeys({AltI});
  EXPECT_EQ(dialog.focus(), 2);
  EXPECT_EQ(heading->activations, 1);
}

TEST_F(DialogTest, HotCharactersWorkWithAltOnly) {
  TestDialog dialog;
  addProbe(dialog, Group::New);
  Probe* second = addProbe(dialog, Group::New);
  const char hot[] = {0, 'i'};
  dialog.setHotChars(hot, 2);
  dialog.runKeys({'i'});
  EXPECT_EQ(second->activations, 0);
  dialog.runKeys({AltI});
  EXPECT_EQ(second->activations, 1);
}

TEST_F(DialogTest, HotCharactersBeyondTheElementsAreNotLookedAt) {
  TestDialog dialog;
  addProbe(dialog, Group::New);
  const char hot[] = {0, 0, 0, 'i'};
  dialog.setHotChars(hot, 4);
  EXPECT_EQ(dialog.runKeys({AltI}), TestDialog::Stop);
}

TEST_F(DialogTest, AKeyGoesToItsHotKeyAlsoInItsOtherCase) {
  TestDialog dialog;
  addProbe(dialog, Group::New);
  Probe* letter = addProbe(dialog, Group::New);
  Probe* function = addProbe(dialog, Group::New);
  letter->hotKey = 'k';
  function->hotKey = Key::F3;
  dialog.runKeys({'k', 'K', Key::F3});
  EXPECT_EQ(letter->activations, 2);
  EXPECT_EQ(function->activations, 1);
  EXPECT_EQ(dialog.focus(), 2);
}

TEST_F(DialogTest, AWideCharacterIsNoKeyOfTheSameLowBits) {
  TestDialog dialog;
  addProbe(dialog, Group::New);
  Probe* function = addProbe(dialog, Group::New);
  function->hotKey = Key::F3;
  const char hot[] = {0, 'i'};
  dialog.setHotChars(hot, 2);
  dialog.runKeys({Key::F3 | Key::WideCharacter, AltI | Key::WideCharacter});
  EXPECT_EQ(function->activations, 0);
}

TEST_F(DialogTest, TheFocusedElementHasTheFirstWord) {
  TestDialog dialog;
  Westring text;
  dialog.addString(1, 1, Group::New, &text, 20, -1);
  Probe* second = addProbe(dialog, Group::New);
  second->hotKey = 'k';
  dialog.runKeys({'k'});
  EXPECT_STREQ(text.data(), L"k");
  EXPECT_EQ(second->activations, 0);
}

TEST_F(DialogTest, FocusTellsTheNewTheOldAndTheGroupsOldFocus) {
  TestDialog dialog;
  Probe* a = addProbe(dialog, Group::New);
  Probe* b = addProbe(dialog, Group::New);
  Probe* c = addProbe(dialog, Group::Same);
  dialog.setFocus(2);
  EXPECT_EQ(c->notifications, "+");
  EXPECT_EQ(a->notifications, "-");
  EXPECT_EQ(b->notifications, "-");  // it was its group's
  dialog.setFocus(1);
  EXPECT_EQ(b->notifications, "-+");
  EXPECT_EQ(c->notifications, "+-");
  EXPECT_EQ(a->notifications, "-");
}

TEST_F(DialogTest, SetFocusIgnoresWhatIsOutOfRangeOrThere) {
  TestDialog dialog;
  Probe* a = addProbe(dialog, Group::New);
  for (int index : {-1, 0, 1, 99}) dialog.setFocus(index);
  EXPECT_EQ(a->notifications, "");
  EXPECT_EQ(dialog.focus(), 0);
}

TEST_F(DialogTest, ASubclassMayRefuseAndRedirectTheFocus) {
  GuardedDialog dialog;
  for (int i = 0; i < 3; ++i) addProbe(dialog, Group::New);
  dialog.setFocus(1);
  EXPECT_EQ(dialog.focus(), 1);
  EXPECT_EQ(dialog.changes, 1);
  dialog.allow = false;
  dialog.setFocus(2);
  EXPECT_EQ(dialog.focus(), 1);
  EXPECT_EQ(dialog.changes, 1);
  dialog.allow = true;
  dialog.redirectTo = 0;
  dialog.setFocus(2);
  EXPECT_EQ(dialog.focus(), 0);
  EXPECT_EQ(dialog.asked.back(), (std::pair{1, 2}));
  dialog.redirectTo = 77;
  dialog.setFocus(2);
  EXPECT_EQ(dialog.focus(), 0);
}

TEST_F(DialogTest, OnlyTheFocusedElementIsDrawnOnEachPass) {
  TestDialog dialog;
  Probe* a = addProbe(dialog, Group::New);
  Probe* b = addProbe(dialog, Group::New);
  EXPECT_EQ(a->draws, 1);  // when it was added
  dialog.runKeys({'x', 'x'});
  EXPECT_EQ(a->draws, 4);
  EXPECT_EQ(b->draws, 1);
  dialog.redraw(1);
  EXPECT_EQ(b->draws, 2);
  dialog.redraw(-1);
  EXPECT_EQ(a->draws, 5);
  EXPECT_EQ(b->draws, 3);
}

TEST_F(DialogTest, CommitAllReachesEveryElement) {
  TestDialog dialog;
  Probe* a = addProbe(dialog, Group::New);
  Probe* b = addProbe(dialog, Group::New);
  dialog.commitAll();
  EXPECT_EQ(a->commits, 1);
  EXPECT_EQ(b->commits, 1);
}

TEST_F(DialogTest, SendMessageReturnsTheAnswerAndRefusesWrongIndices) {
  TestDialog dialog;
  Probe* a = addProbe(dialog, Group::New);
  EXPECT_FALSE(dialog.sendMessage(0, {.kind = MessageKind::ListContent}));
  a->handles = true;
  EXPECT_TRUE(dialog.sendMessage(0, {.kind = MessageKind::ListLength, .value = 4}));
  EXPECT_EQ(a->messages.back().value, 4);
  EXPECT_FALSE(dialog.sendMessage(5, {.kind = MessageKind::ListLength, .value = 4}));
}

TEST_F(DialogTest, AnotherThreadMaySendMessagesWhileTheDialogRuns) {
  TestDialog dialog;
  Probe* probe = addProbe(dialog, Group::New);
  std::thread worker([&dialog] {
    for (int i = 0; i < 200; ++i) {
      EXPECT_TRUE(dialog.sendMessage(0, {.kind = MessageKind::LeftDrag, .value = i}));
    }
  });
  for (int i = 0; i < 50; ++i) queueKey('x');
  dialog.runQueued();
  worker.join();
  dialog.runQueued();
  EXPECT_EQ(probe->messages.size(), 252U);
}

// Ends its dialog by the first message that comes from elsewhere.
class Awaiting : public Probe {
 public:
  using Probe::Probe;
  bool handleMessage(const Message& message) override {
    if (message.kind == MessageKind::ListLength) dialog_.setExitCode(Key::Code(message.value));
    return Probe::handleMessage(message);
  }
};

TEST_F(DialogTest, AMessageOfAnotherThreadWakesTheWaitingDialog) {
  TestDialog dialog;
  dialog.add(std::make_unique<Awaiting>(dialog, 0, 0, Group::New));
  std::thread worker(
      [&dialog] { dialog.sendMessage(0, {.kind = MessageKind::ListLength, .value = 77}); });
  EXPECT_EQ(dialog.run(), Key::Code(77));
  worker.join();
}

TEST_F(DialogTest, OfAListsMessagesNotYetPassedOnTheNewestCounts) {
  TestDialog dialog;
  Probe* probe = addProbe(dialog, Group::New);
  std::thread([&dialog] {
    for (int i = 0; i < 100; ++i) {
      dialog.sendMessage(0, {.kind = MessageKind::ListLength, .value = i});
      dialog.sendMessage(0, {.kind = MessageKind::ListContent});
    }
  }).join();
  dialog.runQueued();
  ASSERT_EQ(probe->messages.size(), 3U);
  EXPECT_EQ(probe->messages[0].kind, MessageKind::ListLength);
  EXPECT_EQ(probe->messages[0].value, 99);
  EXPECT_EQ(probe->messages[1].kind, MessageKind::ListContent);
}

// Joins its worker inside a handler that runs a window of its own, as "Stop the search?" does.
class Joining : public Probe {
 public:
  using Probe::Probe;
  bool handleMessage(const Message& message) override {
    Probe::handleMessage(message);
    if (message.kind != MessageKind::Key || message.key != 'j') return false;
    std::thread worker([this] {
      for (int i = 0; i < 3; ++i)
        dialog_.sendMessage(0, {.kind = MessageKind::ListLength, .value = i});
    });
    {
      Dialog question(-1, -2, 20, 5, 0x70);
      question.addOkCancel(-1, -1, Group::New);
      question.run();
    }
    worker.join();
    seenDuringTheQuestion = messages.size() > 1;
    return true;
  }
  bool seenDuringTheQuestion = false;
};

TEST_F(DialogTest, AWorkerNeverWaitsForAControlThatAsksAQuestion) {
  TestDialog dialog;
  auto joining = std::make_unique<Joining>(dialog, 0, 0, Group::New);
  Joining& control = *joining;
  dialog.add(std::move(joining));
  queueKeys({'j', Key::Enter});
  dialog.runQueued();
  EXPECT_FALSE(control.seenDuringTheQuestion) << "the list lies below the question";
  ASSERT_EQ(control.messages.size(), 3U);
  EXPECT_EQ(control.messages[1].value, 2);
}

TEST_F(DialogTest, TheEndOfTheProgramIsNeitherEscNorAKey) {
  Dialog dialog(-1, -2, 40, 10, Grey);
  dialog.addOkCancel(-1, -1, Group::New);
  queueKeys({Key::Enter});
  const EndRequest end;
  EXPECT_EQ(dialog.run(), Dialog::ProgramEnds);
  EXPECT_EQ(dialog.run(), Dialog::ProgramEnds);
}

TEST_F(DialogTest, TheEndOfTheProgramLeavesNothingInAHistory) {
  const EndRequest end;
  fieldHistory(FieldHistory::Destination)->clear();
  Westring text = L"half typed";
  {
    Dialog dialog(-1, -2, 40, 10, Grey);
    dialog.addString(1, 1, Group::New, &text, 20, 20, FieldHistory::Destination);
    dialog.run();
  }
  EXPECT_EQ(fieldHistory(FieldHistory::Destination)->count(), 0);
}

TEST_F(DialogTest, AnExitKeyEndsWithItsOwnCode) {
  Dialog dialog(-1, -2, 40, 10, Grey);
  dialog.addOkCancel(-1, -1, Group::New);
  dialog.addExitKey(Key::F10);
  queueKeys({Key::F9, Key::F10});
  EXPECT_EQ(dialog.run(), Key::F10);
}

TEST_F(DialogTest, TheCloseButtonIsF10ToADialog) {
  Dialog dialog(-1, -2, 40, 10, Grey);
  dialog.addOkCancel(-1, -1, Group::New);
  queueKeys({Key::F10, Key::Esc});
  EXPECT_EQ(dialog.run(), Key::Esc);
}

TEST_F(DialogTest, ClosingRestoresTheScreenAndHidesTheCursor) {
  const std::vector<Cell> before = screen();
  {
    Westring text = L"text";
    Dialog dialog(-1, -2, 40, 10, Grey);
    dialog.addString(1, 1, Group::New, &text, 20, -1);
    queueKey(Key::Esc);
    dialog.run();
    EXPECT_EQ(console->cursorSize(), 15);
  }
  EXPECT_EQ(screen(), before);
  EXPECT_EQ(console->cursorSize(), 0);
}

TEST_F(DialogTest, TheCommandLinesCursorIsHiddenBehindADialog) {
  TestDialog dialog;
  dialog.addButton(1, 1, Group::New, 'g', "Go");
  setCursorShape(15);
  dialog.runQueued();
  EXPECT_EQ(console->cursorSize(), 0);
}

TEST_F(DialogTest, TheAttributesCanBeChanged) {
  TestDialog dialog;
  dialog.setAttr(0, 0x1E);
  dialog.setAttr(1, 0x2E);
  dialog.setAttr(2, 0x5E);
  EXPECT_EQ(dialog.textAttr(), 0x1E);
  EXPECT_EQ(dialog.fieldAttr(), 0x2E);
  EXPECT_EQ(dialog.focusAttr(), 0x5E);
}
TEST_F(DialogTest, HotCharactersAreTheSameInATurkishLocale) {
  TurkishLocale turkish;
  ASSERT_TRUE(turkish.holds());
  TestDialog dialog;
  addProbe(dialog, Group::New);
  Probe* labelled = addProbe(dialog, Group::New);
  Probe* letter = addProbe(dialog, Group::New);
  letter->hotKey = 'i';
  const char hot[] = {0, 'I'};
  dialog.setHotChars(hot, 2);
  dialog.putHotKeys(0, 0, "Infos", "i");
  dialog.runKeys({AltI, 'I'});
  EXPECT_EQ(labelled->activations, 1);
  EXPECT_EQ(letter->activations, 1);
  EXPECT_NE(attrInside(dialog, 0, 0), attrInside(dialog, 1, 0));
}

#include "console/key_table.h"

#include <X11/XF86keysym.h>
#include <X11/Xlib.h>
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "console/key_codes.h"
#include "support/key_print.h"

namespace {
constexpr int Shift = 1, Ctrl = 4, Alt = 8;

// What each key gives, by state: a key symbol's name or its character in quotes, and the code.
// "A..B" counts up both the name's number or character and the code.
struct Section {
  int state;
  const char* rows;
};

const Section Expected[] = {
    {0,
     "F1..F10 1003B F11 10085 F12 10086 Return D BackSpace 10101 Tab 9 Escape 1B Delete 10053 "
     "Home 10047 Left 1004B Up 10048 Right 1004D Down 10050 Prior 10049 Next 10051 End 1004F "
     "Insert 10052 KP_Add 40002B KP_Subtract 40002D KP_Multiply 40002A"},
    {Alt,
     "F1..F10 10068 F11 1008B F12 1008C Return 1001C BackSpace 1000E Left 1009B Up 10098 "
     "Right 1009D Down 100A0 Home 10097 KP_Add 1004E KP_Subtract 1004A 0 10081 1..9 10078 "
     "backslash 1002B period 10034 comma 10033 bracketleft 1001A bracketright 1001B minus 10082 "
     "equal 10083 semicolon 10027 apostrophe 10028 numbersign 3007A "
     "a 1001E b 10030 c 1002E d 10020 e 10012 f 10021 g 10022 h 10023 i 10017 j 10024 k 10025 "
     "l 10026 m 10032 n 10031 o 10018 p 10019 q 10010 r 10013 s 1001F t 10014 u 10016 v 1002F "
     "w 10011 x 1002D y 10015 z 1002C"},
    {Ctrl,
     "F1..F10 1005E F11 10089 F12 1008A BackSpace 7F Delete 10093 Home 10077 Left 10073 Up 1008D "
     "Right 10074 Down 10091 Prior 10084 Next 10076 End 10075 Insert 10092 Return A backslash 1C "
     "numbersign 1C minus 1F bracketleft 1B bracketright 1D a..z 1 space 20 KP_Add 10090 "
     "KP_Subtract 1008E KP_0..KP_9 40030 KP_Insert 40030 KP_End 40031 KP_Down 40032 KP_Next 40033 "
     "KP_Left 40034 KP_Begin 40035 KP_Right 40036 KP_Home 40037 KP_Up 40038 KP_Prior 40039"},
    {Shift,
     "F1..F10 30054 F11 30087 F12 30088 Left 3004B Up 30048 Right 3004D Down 30050 "
     "ISO_Left_Tab 3000F Delete 30053 Home 30047 Prior 30049 Next 30051 End 3004F Insert 30052 "
     "Return D"},
    {Ctrl | Shift,
     "F1..F10 3005E F11 30089 F12 3008A Left 30073 Right 30074 Home 30077 End 30075 Prior 30084 "
     "Next 30076 Insert 30092 Return 3001C KP_Add 30090 KP_Subtract 3008E bar 2001C "
     "apostrophe 2001C f 20006 j 2000A KP_0..KP_9 60030"},
    {Alt | Shift,
     "BackSpace 3000E F1..F10 30068 F11 3008B F12 3008C underscore 30082 plus 30083 exclam 30078 "
     "at 30079 numbersign 3007A dollar 3007B percent 3007C asciicircum 3007D ampersand 3007E "
     "parenleft 30080 parenright 30081 braceleft 3001A braceright 3001B asciitilde 10029 "
     "colon 30027 quotedbl 30028 apostrophe 10028"},
    {AnyState,
     "Alt_L 10100 Alt_R 10100 Control_L 10100 Control_R 10100 Shift_L 10100 Shift_R 10100"},
};

std::vector<KeyRow> expectedRows() {
  std::vector<KeyRow> rows;
  for (const Section& section : Expected) {
    std::istringstream in(section.rows);
    for (std::string name, code; in >> name >> code;) {
      const size_t dots = name.find("..");
      const auto first = XStringToKeysym(name.substr(0, dots).c_str());
      const auto last =
          dots == std::string::npos ? first : XStringToKeysym(name.substr(dots + 2).c_str());
      const int base = std::stoi(code, nullptr, 16);
      for (auto symbol = first; symbol <= last; ++symbol) {
        rows.push_back({static_cast<unsigned>(symbol), section.state,
                        Key::Code(base + static_cast<int>(symbol - first))});
      }
    }
  }
  return rows;
}

TEST(KeyCode, ANumberAndACodeBecomeEachOtherOnlyOnPurpose) {
  static_assert(std::is_convertible_v<char, Key::Code> &&
                std::is_convertible_v<wchar_t, Key::Code>);
  static_assert(!std::is_convertible_v<int, Key::Code> && !std::is_convertible_v<Key::Code, int>);
  static_assert(!std::is_convertible_v<bool, Key::Code> && !std::is_convertible_v<Key::Code, bool>);
  EXPECT_EQ(Key::Code(27), Key::Esc);
  EXPECT_EQ(Key::F1.value(), 0x1003B);
}

TEST(KeyCode, ACharacterStandsForItselfAndAnHighOneIsMarked) {
  const struct {
    Key::Code key;
    int value;
  } rows[] = {{'a', 'a'},
              {'\xE4', 0xE4},
              {L'\xFFFF', 0xFFFF},
              {L'\U00010000', 0x1010000},
              {L'\U0001F600', 0x101F600}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.key.value(), row.value);
    EXPECT_TRUE(row.key.isText()) << row.key;
    EXPECT_EQ(row.key.character(), static_cast<wchar_t>(row.value & 0xFFFFFF)) << row.key;
  }
}

TEST(KeyCode, ControlCharactersAreNoTextAndScanCodesNoCharacters) {
  for (const Key::Code key : {Key::NoKey, Key::Tab, Key::Enter, Key::Esc, Key::ctrl('z')}) {
    EXPECT_TRUE(key.isCharacter()) << key;
    EXPECT_FALSE(key.isText()) << key;
  }
  for (const Key::Code key : {Key::F1, Key::Home, Key::MouseEvent, Key::GrayPlus, Key::Code(-1)}) {
    EXPECT_FALSE(key.isCharacter()) << key;
  }
}

TEST(KeyTable, HasTwoHundredAndSeventyRows) {
  EXPECT_EQ(keyTable().size(), 270u);
  EXPECT_EQ(expectedRows().size(), 270u);
}

TEST(KeyTable, EveryRowGivesItsCode) {
  for (const KeyRow& row : expectedRows()) {
    const int state = row.state == AnyState ? Shift : row.state;
    EXPECT_EQ(lookUpKey(row.symbol, state), row.code)
        << "symbol " << XKeysymToString(row.symbol) << " state " << row.state;
  }
}

TEST(KeyTable, AFewKeysStandBesideIt) {
  EXPECT_EQ(lookUpKey(XK_space, Alt), Key::AltSpace);
  EXPECT_EQ(Key::AltSpace.value(), 0x10039);
  EXPECT_EQ(lookUpKey('z', Ctrl | Shift), Key::CtrlShiftZ);
  EXPECT_EQ(Key::CtrlShiftZ.value(), 0x2001A);
  EXPECT_EQ(lookUpKey('c', Ctrl | Shift), Key::ctrl('c') | Key::ShiftedKey);
  EXPECT_EQ(lookUpKey('x', Ctrl | Shift), Key::ctrl('x') | Key::ShiftedKey);
  EXPECT_EQ(lookUpKey(XK_KP_Insert, Ctrl | Shift), Key::ctrlKeypadDigit(0) | Key::ShiftedKey);
  EXPECT_EQ(lookUpKey(XK_KP_Page_Up, Ctrl | Shift), Key::ctrlKeypadDigit(9) | Key::ShiftedKey);
  EXPECT_EQ(lookUpKey(XK_space, Shift), Key::NoKey);
}

TEST(KeyTable, HoldsNoRowBesideThose) {
  const auto expected = expectedRows();
  for (const KeyRow& row : keyTable()) {
    bool found = false;
    for (const KeyRow& e : expected) {
      found |= e.symbol == row.symbol && e.state == row.state && e.code == row.code;
    }
    EXPECT_TRUE(found) << std::hex << row.symbol << " state " << row.state;
  }
}

KeyInput press(unsigned long symbol, int state, int hwCode = 200) {
  KeyInput input;
  input.symbol = static_cast<unsigned>(symbol);
  input.state = static_cast<unsigned>(state);
  input.hwCode = hwCode;
  return input;
}

TEST(KeyTranslation, AltWithACapitalIsAltWithTheLetter) {
  EXPECT_EQ(translateKey(press('A', Alt)).code.value(), 0x1001E);
}

TEST(KeyTranslation, CapsNumAndSuperLockCountForNothing) {
  constexpr int CapsLock = 2, NumLock = 16, Super = 64;
  for (const int lock : {CapsLock, NumLock, Super, CapsLock | NumLock | Super}) {
    const KeyResult result = translateKey(press('A', Alt | lock));
    EXPECT_EQ(result.code.value(), 0x1001E);
    EXPECT_EQ(result.state, Alt);
  }
}

TEST(KeyTranslation, ShiftPressedAndReleasedGivesStateOneThenNone) {
  KeyResult result = translateKey(press(XK_Shift_L, 0));
  EXPECT_EQ(result.action, KeyAction::Queue);
  EXPECT_EQ(result.code, Key::ShiftChanged);
  EXPECT_EQ(result.state, Shift);
  KeyInput release = press(XK_Shift_L, Shift);
  release.press = false;
  result = translateKey(release);
  EXPECT_EQ(result.action, KeyAction::Queue);
  EXPECT_EQ(result.code, Key::ShiftChanged);
  EXPECT_EQ(result.state, 0);
}

TEST(KeyTranslation, EachModifierKeyChangesItsOwnBit) {
  const struct {
    unsigned long symbol;
    int bit;
  } keys[] = {{XK_Alt_L, Alt},      {XK_Alt_R, Alt},     {XK_Control_L, Ctrl},
              {XK_Control_R, Ctrl}, {XK_Shift_L, Shift}, {XK_Shift_R, Shift}};
  for (const auto& key : keys) {
    const int others = (Alt | Ctrl | Shift) & ~key.bit;
    EXPECT_EQ(translateKey(press(key.symbol, others)).state, others | key.bit);
    KeyInput release = press(key.symbol, others | key.bit);
    release.press = false;
    EXPECT_EQ(translateKey(release).state, others);
  }
}

TEST(KeyTranslation, AltUnderShiftIsAltWhateverTheLayoutCallsIt) {
  const KeyResult result = translateKey(press(XK_Meta_L, Shift));
  EXPECT_EQ(result.code, Key::ShiftChanged);
  EXPECT_EQ(result.state, Alt | Shift);
}

TEST(KeyTranslation, AReleaseOfALetterIsDropped) {
  KeyInput release = press('a', 0);
  release.press = false;
  EXPECT_EQ(translateKey(release).action, KeyAction::Drop);
}

TEST(KeyTranslation, BreakIsNoKey) {
  EXPECT_EQ(translateKey(press(XK_Break, Ctrl)).action, KeyAction::Break);
}

TEST(KeyTranslation, APlainLetterGoesToTheInputMethod) {
  EXPECT_EQ(translateKey(press('a', 0)).action, KeyAction::InputMethod);
  EXPECT_EQ(translateKey(press(XK_adiaeresis, 0)).action, KeyAction::InputMethod);
}

TEST(KeyTranslation, CtrlOnTheDigitRowKeepsTheSymbol) {
  EXPECT_EQ(translateKey(press('1', Ctrl, 10)).code, '1');
  EXPECT_EQ(translateKey(press('0', Ctrl, 19)).code, '0');
  EXPECT_EQ(translateKey(press(XK_exclam, Ctrl | Shift, 10)).code, '!');
  EXPECT_EQ(translateKey(press('#', Ctrl, 12)).code, '#') << "the table's 28 is passed over";
  EXPECT_EQ(translateKey(press('#', Ctrl, 51)).code.value(), 28)
      << "beside the digit row it stands";
}

TEST(KeyTranslation, SymbolsAboveAByteAreNotLowered) {
  EXPECT_EQ(translateKey(press(0xFFFFFFFFul, 0)).action, KeyAction::InputMethod);
  EXPECT_EQ(translateKey(press(0x10FFFF41ul, Alt)).action, KeyAction::InputMethod);
  EXPECT_EQ(translateKey(press(XF86XK_AudioPlay, 0)).action, KeyAction::InputMethod);
}

TEST(KeyTranslation, TheKeypadWithoutNumLockIsItsGrayTwin) {
  const struct {
    unsigned long symbol;
    Key::Code code;
  } keys[] = {{XK_KP_Home, Key::Code(0x10047)},   {XK_KP_Left, Key::Code(0x1004B)},
              {XK_KP_Up, Key::Code(0x10048)},     {XK_KP_Right, Key::Code(0x1004D)},
              {XK_KP_Down, Key::Code(0x10050)},   {XK_KP_Prior, Key::Code(0x10049)},
              {XK_KP_Next, Key::Code(0x10051)},   {XK_KP_End, Key::Code(0x1004F)},
              {XK_KP_Insert, Key::Code(0x10052)}, {XK_KP_Delete, Key::Code(0x10053)},
              {XK_KP_Enter, Key::Code(13)}};
  for (const auto& key : keys) {
    EXPECT_EQ(translateKey(press(key.symbol, 0)).code, key.code) << XKeysymToString(key.symbol);
  }
  EXPECT_EQ(translateKey(press(XK_KP_Home, Shift)).code.value(), 0x30047);
  EXPECT_EQ(translateKey(press(XK_KP_Enter, Ctrl)).code.value(), 10);
  EXPECT_EQ(translateKey(press(XK_KP_Enter, Alt)).code.value(), 0x1001C);
  EXPECT_EQ(translateKey(press(XK_KP_Delete, Ctrl)).code.value(), 0x10093);
  EXPECT_EQ(translateKey(press(XK_KP_Home, Ctrl)).code.value(), 0x40037) << "a digit with Ctrl";
}

TEST(KeyTranslation, TheKeypadsOperatorsKeepTheirCodesWhileShiftIsHeld) {
  EXPECT_EQ(translateKey(press(XK_KP_Add, Shift)).code.value(), 0x40002B);
  EXPECT_EQ(translateKey(press(XK_KP_Subtract, Shift)).code.value(), 0x40002D);
  EXPECT_EQ(translateKey(press(XK_KP_Multiply, Shift)).code.value(), 0x40002A);
  EXPECT_EQ(translateKey(press(XK_KP_Multiply, Shift)).state, Shift);
}

TEST(KeyTranslation, BackspaceAndTabKnowShift) {
  EXPECT_EQ(translateKey(press(XK_BackSpace, Shift)).code.value(), 0x10101);
  EXPECT_EQ(translateKey(press(XK_Tab, Shift)).code.value(), 0x3000F);
  EXPECT_EQ(translateKey(press(XK_KP_Tab, Shift)).code.value(), 0x3000F);
  EXPECT_EQ(translateKey(press(0xFD05, Shift)).code.value(), 0x3000F) << "the 3270's Back Tab";
  EXPECT_EQ(translateKey(press(XK_KP_Tab, 0)).code.value(), 9);
  EXPECT_EQ(translateKey(press(XK_space, Shift)).action, KeyAction::InputMethod);
}

TEST(KeyTranslation, AltAndCtrlLettersWorkOnAnotherScript) {
  KeyInput input = press(XK_Cyrillic_ef, Alt);
  input.baseSymbol = 'a';
  EXPECT_EQ(translateKey(input).code.value(), 0x1001E);
  input.state = Ctrl;
  EXPECT_EQ(translateKey(input).code.value(), 1);
  input.state = 0;
  EXPECT_EQ(translateKey(input).action, KeyAction::InputMethod);
}

TEST(KeyTranslation, CtrlAndAltTogetherHaveNoRow) {
  EXPECT_EQ(translateKey(press('a', Ctrl | Alt)).action, KeyAction::InputMethod);
  EXPECT_EQ(translateKey(press(XK_F1, Ctrl | Alt)).action, KeyAction::InputMethod);
}

TEST(KeyTranslation, NoModifiedCharacterIsAPlainOperatorOfTheKeypad) {
  for (const int character : {'+', '-', '*'}) {
    EXPECT_EQ(translateKey(press(static_cast<unsigned>(character), 0)).action,
              KeyAction::InputMethod);
  }
}

TEST(KeyTranslation, CtrlBackslashWithShiftHasACodeOfItsOwn) {
  EXPECT_EQ(translateKey(press('\\', Ctrl)).code.value(), 28);
  EXPECT_EQ(translateKey(press(XK_bar, Ctrl | Shift)).code.value(), 0x2001C);
}

TEST(HotKeyChar, AllSixtyOnePairs) {
  const std::string characters = "abcdefghijklmnopqrstuvwxyz,1234567890.;'[]-=`\\_+!@#$%^&(){}\"";
  constexpr int codes[] = {
      0x1001E, 0x10030, 0x1002E, 0x10020, 0x10012, 0x10021, 0x10022, 0x10023, 0x10017, 0x10024,
      0x10025, 0x10026, 0x10032, 0x10031, 0x10018, 0x10019, 0x10010, 0x10013, 0x1001F, 0x10014,
      0x10016, 0x1002F, 0x10011, 0x1002D, 0x10015, 0x1002C, 0x10033, 0x10078, 0x10079, 0x1007A,
      0x1007B, 0x1007C, 0x1007D, 0x1007E, 0x1007F, 0x10080, 0x10081, 0x10034, 0x10027, 0x10028,
      0x1001A, 0x1001B, 0x10082, 0x10083, 0x10029, 0x1002B, 0x30082, 0x30083, 0x30078, 0x30079,
      0x3007A, 0x3007B, 0x3007C, 0x3007D, 0x3007E, 0x30080, 0x30081, 0x3001A, 0x3001B, 0x30028};
  ASSERT_EQ(std::size(codes), characters.size());  // '~' shares its code with the grave accent
  for (size_t i = 0; i < characters.size(); ++i) {
    EXPECT_EQ(hotKeyChar(Key::Code(codes[i])), characters[i]) << std::hex << codes[i];
  }
}

TEST(HotKeyChar, TheGraveAccentWinsOverTheTilde) {
  EXPECT_EQ(hotKeyChar(Key::alt('`')), '`');
}

TEST(HotKeyChar, AnyOtherCodeComesBackUnchanged) {
  for (const Key::Code code : {Key::NoKey, Key::ctrl('b'), Key::Esc, Key::Code('a'), Key::Code('~'),
                               Key::F1, Key::AltF7, Key::AltEnter, Key::Code(0x30027),
                               Key::MouseEvent, Key::Code(0x1F600) | Key::WideCharacter}) {
    EXPECT_EQ(hotKeyChar(code), code);
  }
}
}  // namespace

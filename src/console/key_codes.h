#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <functional>
#include <string_view>

// A key code is a 32-bit value in the shape of a PC extended scan code: characters stand for
// themselves, ExtendedKey marks a scan code, ShiftedKey tells Shift apart.
namespace Key {

// Bits of a code.
enum class Mark : int {};
inline constexpr Mark NoMark{};
inline constexpr Mark ExtendedKey{0x10000};
inline constexpr Mark ShiftedKey{0x20000};
inline constexpr Mark CtrlDigitKey{0x40000};     // low byte: digit value or its ASCII code
inline constexpr Mark GrayKey{0x400000};         // keypad operator; low byte its ASCII code
inline constexpr Mark WideCharacter{0x1000000};  // with a committed character above U+FFFF

template <class T>
concept Character = std::same_as<T, char> || std::same_as<T, wchar_t>;

// A character is a code by itself; a number becomes one, and a code a number, only on purpose.
class Code {
 public:
  enum class Label : int {};  // what a code is in a `switch`

  constexpr Code() = default;
  constexpr explicit Code(int value) : value_(value) {}
  template <Character T>
  constexpr Code(T character) : value_(valueOf(character)) {}

  constexpr int value() const { return value_; }
  constexpr operator Label() const { return Label{value_}; }
  constexpr bool has(Mark mark) const { return (value_ & static_cast<int>(mark)) != 0; }

  // A character, control characters included.
  constexpr bool isCharacter() const {
    return value_ >= 0 && (has(WideCharacter) || value_ < static_cast<int>(ExtendedKey));
  }
  // A character that can stand in a line of text.
  constexpr bool isText() const { return isCharacter() && (has(WideCharacter) || value_ >= L' '); }
  // The character that such a code stands for.
  constexpr wchar_t character() const {
    return static_cast<wchar_t>(value_ & ~static_cast<int>(WideCharacter));
  }

  friend constexpr bool operator==(Code, Code) = default;
  friend constexpr auto operator<=>(Code, Code) = default;
  friend constexpr Code operator|(Code code, Mark mark) {
    return Code(code.value_ | static_cast<int>(mark));
  }

 private:
  static constexpr int valueOf(char character) { return static_cast<unsigned char>(character); }
  static constexpr int valueOf(wchar_t character) {
    const bool wide = character >= static_cast<int>(ExtendedKey);
    return static_cast<int>(character) | (wide ? static_cast<int>(WideCharacter) : 0);
  }

  int value_ = 0;
};

inline constexpr Code NoKey{0};               // no key
inline constexpr Code MouseEvent{0x200000};   // no key: a mouse message was filled in
inline constexpr Code ShiftChanged{0x10100};  // only the shift state changed

inline constexpr Code Backspace{0x10101};
inline constexpr Code Tab{9};
inline constexpr Code Enter{13};
inline constexpr Code Esc{27};
inline constexpr Code Space{32};

constexpr Code extended(int scan) {
  return Code(scan) | ExtendedKey;
}
constexpr Code shifted(int scan) {
  return extended(scan) | ShiftedKey;
}

inline constexpr Code F1{0x1003B}, F2{0x1003C}, F3{0x1003D}, F4{0x1003E}, F5{0x1003F}, F6{0x10040},
    F7{0x10041}, F8{0x10042}, F9{0x10043}, F10{0x10044}, F11{0x10085}, F12{0x10086};
inline constexpr Code ShiftF1{0x30054}, ShiftF2{0x30055}, ShiftF3{0x30056}, ShiftF4{0x30057},
    ShiftF5{0x30058}, ShiftF6{0x30059}, ShiftF7{0x3005A}, ShiftF8{0x3005B}, ShiftF9{0x3005C},
    ShiftF10{0x3005D}, ShiftF11{0x30087}, ShiftF12{0x30088};
inline constexpr Code CtrlF1{0x1005E}, CtrlF2{0x1005F}, CtrlF3{0x10060}, CtrlF4{0x10061},
    CtrlF5{0x10062}, CtrlF6{0x10063}, CtrlF7{0x10064}, CtrlF8{0x10065}, CtrlF9{0x10066},
    CtrlF10{0x10067}, CtrlF11{0x10089}, CtrlF12{0x1008A};
inline constexpr Code AltF1{0x10068}, AltF2{0x10069}, AltF3{0x1006A}, AltF4{0x1006B},
    AltF5{0x1006C}, AltF6{0x1006D}, AltF7{0x1006E}, AltF8{0x1006F}, AltF9{0x10070}, AltF10{0x10071},
    AltF11{0x1008B}, AltF12{0x1008C};
inline constexpr Code ShiftAltF1{0x30068}, ShiftAltF2{0x30069}, ShiftAltF3{0x3006A},
    ShiftAltF4{0x3006B}, ShiftAltF5{0x3006C}, ShiftAltF6{0x3006D}, ShiftAltF7{0x3006E},
    ShiftAltF8{0x3006F}, ShiftAltF9{0x30070}, ShiftAltF10{0x30071}, ShiftAltF11{0x3008B},
    ShiftAltF12{0x3008C};
inline constexpr Code CtrlShiftF1{0x3005E}, CtrlShiftF2{0x3005F}, CtrlShiftF3{0x30060},
    CtrlShiftF4{0x30061}, CtrlShiftF5{0x30062}, CtrlShiftF6{0x30063}, CtrlShiftF7{0x30064},
    CtrlShiftF8{0x30065}, CtrlShiftF9{0x30066}, CtrlShiftF10{0x30067}, CtrlShiftF11{0x30089},
    CtrlShiftF12{0x3008A};

inline constexpr Code Home{0x10047}, Up{0x10048}, PageUp{0x10049}, Left{0x1004B}, Right{0x1004D},
    End{0x1004F}, Down{0x10050}, PageDown{0x10051}, Insert{0x10052}, Delete{0x10053};
inline constexpr Code ShiftHome{0x30047}, ShiftUp{0x30048}, ShiftPageUp{0x30049},
    ShiftLeft{0x3004B}, ShiftRight{0x3004D}, ShiftEnd{0x3004F}, ShiftDown{0x30050},
    ShiftPageDown{0x30051}, ShiftInsert{0x30052}, ShiftDelete{0x30053}, ShiftTab{0x3000F};
inline constexpr Code CtrlLeft{0x10073}, CtrlRight{0x10074}, CtrlEnd{0x10075},
    CtrlPageDown{0x10076}, CtrlHome{0x10077}, CtrlPageUp{0x10084}, CtrlUp{0x1008D},
    CtrlDown{0x10091}, CtrlInsert{0x10092}, CtrlDelete{0x10093}, CtrlBackspace{127}, CtrlEnter{10};
inline constexpr Code CtrlShiftLeft{0x30073}, CtrlShiftRight{0x30074}, CtrlShiftEnd{0x30075},
    CtrlShiftHome{0x30077}, CtrlShiftPageUp{0x30084}, CtrlShiftPageDown{0x30076},
    CtrlShiftInsert{0x30092}, CtrlShiftEnter{0x3001C}, ShiftAltBackspace{0x3000E},
    AltSpace{0x10039};
// Control characters of signs; that of '[' is Esc, told apart by the Ctrl key held.
inline constexpr Code CtrlBackslash{28}, CtrlBracketRight{29}, CtrlUnderscore{31},
    CtrlShiftBackslash{0x2001C}, CtrlShiftF{0x20006}, CtrlShiftJ{0x2000A}, CtrlShiftZ{0x2001A},
    CtrlShiftC{0x20003}, CtrlShiftX{0x20018};
// Ctrl with a letter or Enter by its scan code, as some keyboards tell it.
inline constexpr Code CtrlScanBracketLeft{0x9001A}, CtrlScanEnter{0x9001C}, CtrlScanF{0x90021},
    CtrlScanJ{0x90024}, CtrlShiftScanEnter{0xB001C}, CtrlShiftScanF{0xB0021},
    CtrlShiftScanJ{0xB0024};
inline constexpr Code AltHome{0x10097}, AltUp{0x10098}, AltLeft{0x1009B}, AltRight{0x1009D},
    AltDown{0x100A0}, AltEnter{0x1001C}, AltBackspace{0x1000E};
inline constexpr Code GrayPlus{0x40002B}, GrayMinus{0x40002D}, GrayStar{0x40002A},
    AltGrayPlus{0x1004E}, AltGrayMinus{0x1004A}, CtrlGrayPlus{0x10090}, CtrlGrayMinus{0x1008E},
    CtrlShiftGrayPlus{0x30090}, CtrlShiftGrayMinus{0x3008E};

constexpr Code ctrl(char letter) {
  return Code(letter - 'a' + 1);
}

// Alt with a letter, a digit or a sign that needs no Shift: the scan code of its key, but the digit
// row has codes of its own. NoKey for any other character.
constexpr Code alt(char character) {
  struct Row {
    std::string_view characters;
    int firstScan;
  };
  constexpr Row rows[] = {{"qwertyuiop[]", 0x10},
                          {"asdfghjkl;'`", 0x1E},
                          {"\\zxcvbnm,.", 0x2B},
                          {"1234567890-=", 0x78}};
  for (const Row& row : rows) {
    const auto at = row.characters.find(character);
    if (at != std::string_view::npos) return extended(row.firstScan + static_cast<int>(at));
  }
  return NoKey;
}
// Alt and Shift with the key of such a character.
constexpr Code shiftAlt(char character) {
  return alt(character) | ShiftedKey;
}
inline constexpr Code AltD{alt('d')}, AltBackslash{alt('\\')};

// Ctrl with a digit of the digit row, and of the keypad.
constexpr Code ctrlDigit(int digit) {
  return Code(digit) | CtrlDigitKey;
}
constexpr Code ctrlKeypadDigit(int digit) {
  return Code('0' + digit) | CtrlDigitKey;
}
// The digit of such a code.
constexpr int digitOf(Code code) {
  const int value = code.value() & 0xFF;
  return value >= '0' ? value - '0' : value;
}

}  // namespace Key

template <>
struct std::hash<Key::Code> {
  std::size_t operator()(Key::Code code) const { return std::hash<int>()(code.value()); }
};

// Hardware key codes that mean the same in every layout.
namespace HardwareKey {
inline constexpr int FirstDigit = 10;  // of the digit row: 1 to 9, and then 0
inline constexpr int LastDigit = 19;
constexpr bool isDigit(int hwCode) {
  return hwCode >= FirstDigit && hwCode <= LastDigit;
}
}  // namespace HardwareKey

namespace ShiftState {
inline constexpr int Shift = 1;
inline constexpr int Ctrl = 4;
inline constexpr int Alt = 8;
inline constexpr int Mask = 13;
}  // namespace ShiftState

// The code of F1 to F10 (`number` from 1) under a set of modifiers (ShiftState bits); NoKey for the
// two sets that have no function keys: Ctrl+Alt, and all three.
Key::Code functionKey(int number, int shiftState);

// The plain character of an Alt code (Alt+letter, digit or punctuation, also with Shift); any other
// code comes back unchanged.
Key::Code hotKeyChar(Key::Code code);

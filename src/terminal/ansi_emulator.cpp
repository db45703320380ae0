#include "terminal/ansi_emulator.h"

#include <algorithm>

#include "foundation/code_page.h"
#include "foundation/utf8.h"
#include "terminal/terminal_keys.h"

namespace {
constexpr char Bell = 7, Backspace = 8, Tab = 9, LineFeed = 10, Return = 13, Escape = 27;
constexpr unsigned char FirstPrintable = 32, Delete = 127, FirstHigh = 128;
constexpr int TabWidth = 8;
constexpr int CodePage437 = 437;
constexpr wchar_t LineSeparator = 0x2028, ParagraphSeparator = 0x2029;

bool isPlain(char byte) {
  return byte >= FirstPrintable && byte != Delete;
}

// Nothing that would break a line of cells apart where it is drawn.
wchar_t shown(wchar_t character) {
  if (character == LineSeparator || character == ParagraphSeparator) return mapControl(Delete);
  return mapControl(displayCharacter(character));
}

std::string withoutNuls(std::string_view bytes) {
  std::string result(bytes);
  std::erase(result, '\0');
  return result;
}
}  // namespace

CAnsiTerminalEmulator::CAnsiTerminalEmulator(CConsole& screen, ChildInput& input,
                                             const char* logPath)
    : console_(screen), input_(input), log_(logPath), screen_(screen) {}

void CAnsiTerminalEmulator::write(std::string_view bytes) {
  std::string joined;
  if (bytes.find('\0') != std::string_view::npos) {
    joined = pending_ + withoutNuls(bytes);
  } else if (!pending_.empty()) {
    joined = pending_.append(bytes);
  }
  pending_.clear();
  // One look at the clock for all that came at once, instead of one for each row.
  console_.beginBatch();
  screen_.begin();
  interpret(joined.empty() ? bytes : joined);
  screen_.end();
  console_.endBatch();
  // However many were asked for, nobody could hear them apart.
  if (beep_) console_.beep();
  beep_ = false;
}

void CAnsiTerminalEmulator::interpret(std::string_view text) {
  while (!text.empty()) {
    if (static_cast<unsigned char>(text[0]) >= FirstPrintable) {
      text.remove_prefix(print(text));
    } else if (text[0] != Escape) {
      control(text[0]);
      text.remove_prefix(1);
    } else if (text.size() > 1 && text[1] != '[') {
      text.remove_prefix(1);  // the byte behind it is ordinary text
    } else {
      const auto sequence = text.size() > 1 ? readControlSequence(text.substr(2)) : std::nullopt;
      if (!sequence) {
        hold(text);
        return;
      }
      perform(*sequence);
      text.remove_prefix(2 + sequence->length);
    }
  }
}

void CAnsiTerminalEmulator::hold(std::string_view sequence) {
  if (sequence.size() > LongestPending) {
    log_.add("Dropped code of " + std::to_string(sequence.size()) + " bytes");
  } else {
    pending_ = sequence;
  }
}

void CAnsiTerminalEmulator::control(char byte) {
  switch (byte) {
    case Bell:
      beep_ = true;
      break;
    case Backspace:
      screen_.moveTo(screen_.x() - 1, screen_.y());
      break;
    case Tab:
      screen_.tab();
      break;
    case LineFeed:
      screen_.newline();
      break;
    case Return:
      screen_.moveTo(0, screen_.y());
      break;
    default:
      break;
  }
}

size_t CAnsiTerminalEmulator::print(std::string_view text) {
  const auto end = std::find_if_not(text.begin(), text.end(), isPlain);
  if (end != text.begin()) {
    const std::string_view plain(text.begin(), end);
    screen_.put(plain, rendition_.attr);
    lastChar_ = plain.back();
    return plain.size();
  }
  const auto byte = static_cast<unsigned char>(text[0]);
  if (byte == Delete) return 1;
  if (rendition_.highBytes == Rendition::HighBytes::CodePage437) {
    place(codePageCharacter(byte));
    return 1;
  }
  wchar_t character;
  const size_t length = decodeCharacter(text, character);
  place(shown(character));
  return length;
}

void CAnsiTerminalEmulator::place(wchar_t character) {
  screen_.put(character, rendition_.attr);
  lastChar_ = character;
}

wchar_t CAnsiTerminalEmulator::codePageCharacter(unsigned char byte) {
  if (highHalf_.empty()) {
    std::string bytes;
    for (int high = FirstHigh; high < 256; ++high) bytes += static_cast<char>(high);
    highHalf_ = fromCodePage(bytes.c_str(), CodePage437);
  }
  return highHalf_[byte - FirstHigh];
}

void CAnsiTerminalEmulator::perform(const ControlSequence& sequence) {
  log_.open();
  if (sequence.final == 'm') {
    setRendition(sequence);
  } else if (!moveCursor(sequence) && !editLine(sequence) && !editScreen(sequence)) {
    log_.add(std::string("Unhandled code ") + sequence.final + " (" +
             std::to_string(sequence.count) + " args)");
  }
}

bool CAnsiTerminalEmulator::moveCursor(const ControlSequence& sequence) {
  const int x = screen_.x(), y = screen_.y();
  const int n = sequence.atLeastOne();
  switch (sequence.final) {
    // For these four an explicit 0 is no move.
    case 'A':
      screen_.moveTo(x, y - sequence.argument(0, 1));
      return true;
    case 'B':
      screen_.moveTo(x, y + sequence.argument(0, 1));
      return true;
    case 'C':
      screen_.moveTo(x + sequence.argument(0, 1), y);
      return true;
    case 'D':
      screen_.moveTo(x - sequence.argument(0, 1), y);
      return true;
    case 'E':
      screen_.moveTo(0, y + n);
      return true;
    case 'F':
      screen_.moveTo(0, y - n);
      return true;
    case 'G':
      screen_.moveTo(n - 1, y);
      return true;
    case 'H':
    case 'f':
      screen_.moveTo(sequence.argument(1, 0) - 1, n - 1);
      return true;
    case 'I':
      screen_.moveTo((x / TabWidth + n) * TabWidth, y);
      return true;
    case 'Z':
      screen_.moveTo(((x + TabWidth - 1) / TabWidth - n) * TabWidth, y);
      return true;
    case 'd':
      screen_.moveTo(x, n - 1);
      return true;
    default:
      return false;
  }
}

bool CAnsiTerminalEmulator::editLine(const ControlSequence& sequence) {
  const int x = screen_.x();
  const int n = sequence.atLeastOne();
  switch (sequence.final) {
    case '@':
      screen_.insertCells(n, rendition_.attr);
      return true;
    case 'P':
      screen_.deleteCells(n, rendition_.attr);
      return true;
    case 'X':
      screen_.blankColumns(x, x + n, rendition_.attr);
      return true;
    case 'K':
      eraseLine(sequence.argument(0, 0));
      return true;
    case 'b':
      repeat(n);
      return true;
    default:
      return false;
  }
}

bool CAnsiTerminalEmulator::editScreen(const ControlSequence& sequence) {
  const int n = sequence.atLeastOne();
  switch (sequence.final) {
    case 'J':
      eraseDisplay(sequence.argument(0, 0));
      return true;
    case 'L':
      screen_.scrollDown(screen_.y(), n, rendition_.attr);
      return true;
    case 'M':
      screen_.scrollUp(screen_.y(), n, rendition_.attr);
      return true;
    case 'S':
      screen_.scrollUp(0, sequence.argument(0, 1), rendition_.attr);
      return true;
    case 'T':
      screen_.scrollDown(0, n, rendition_.attr);
      return true;
    default:
      return false;
  }
}

void CAnsiTerminalEmulator::eraseLine(int which) {
  const int from = which == 0 ? screen_.x() : 0;
  const int end = which == 1 ? screen_.x() : screen_.width();
  screen_.blankColumns(from, end, rendition_.attr);
}

void CAnsiTerminalEmulator::eraseDisplay(int which) {
  eraseLine(which);
  if (which > 2) return;
  const int from = which == 0 ? screen_.y() + 1 : 0;
  const int end = which == 1 ? screen_.y() : screen_.height();
  screen_.blankRows(from, end, rendition_.attr);
}

// What lies more than two screens back has scrolled away, whatever it was.
void CAnsiTerminalEmulator::repeat(int count) {
  if (lastChar_ == 0) return;
  const int width = screen_.width();
  const int most = 2 * width * screen_.height();
  if (count > most) count -= (count - most) / width * width;
  for (int i = 0; i < count; ++i) screen_.put(lastChar_, rendition_.attr);
}

void CAnsiTerminalEmulator::setRendition(const ControlSequence& sequence) {
  for (const int argument : applyRendition(sequence, rendition_)) {
    log_.add("Unhandled Graphic Rendition " + std::to_string(argument));
  }
}

bool CAnsiTerminalEmulator::sendKey(Key::Code code) {
  const std::string bytes = keyBytes(code);
  return bytes.empty() || input_.put(bytes) == ChildInput::Put::Taken;
}

bool CAnsiTerminalEmulator::sendText(const Westring& text) {
  return input_.put(pastedBytes(text)) == ChildInput::Put::Taken;
}

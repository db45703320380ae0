#include "history/history_lines.h"

#include <algorithm>
#include <unordered_set>

#include "foundation/bounded_lines.h"
#include "foundation/fold.h"
#include "foundation/utf8.h"

namespace {

constexpr char FieldMark = 0x19;
constexpr size_t MarkPlaces = 3;  // where the mark makes a line that of a field
constexpr size_t MostDigits = 2;
constexpr char LineEnd[] = "\r\n";
constexpr char Blanks[] = " \t\v\f\r";

bool isControl(char byte) {
  const auto code = static_cast<unsigned char>(byte);
  return code < ' ' || code == 0x7F;
}

bool canBeKept(std::string_view text) {
  return !text.empty() && std::none_of(text.begin(), text.end(), isControl);
}

std::string lineOf(const std::string& before, std::string_view text) {
  std::string line = canBeKept(text) ? before + std::string(text) : std::string();
  return line.size() > LongestHistoryText ? std::string() : line;
}

std::string fieldLine(int number, std::string_view text) {
  return lineOf(std::to_string(number) + FieldMark, text);
}

// -1 for what is no number of a field.
int fieldNumber(std::string_view digits) {
  const auto isDigit = [](char ch) { return ch >= '0' && ch <= '9'; };
  if (digits.empty() || digits.size() > MostDigits) return -1;
  if (!std::all_of(digits.begin(), digits.end(), isDigit)) return -1;
  const int number = std::stoi(std::string(digits));
  return number < FieldHistoryCount ? number : -1;
}

std::wstring foldedText(std::string_view text) {
  std::wstring folded = decodeFileName(std::string(text).c_str()).data();
  foldString(folded.data());
  return folded;
}

// Leaves each text once, where it stood last, and of these the newest `most`.
template <class KeyOf>
void keepLast(std::vector<std::string_view>& texts, size_t most, KeyOf keyOf) {
  std::unordered_set<decltype(keyOf(texts[0]))> seen;
  seen.reserve(std::min(texts.size(), most));
  std::vector<std::string_view> kept;
  for (auto text = texts.rbegin(); text != texts.rend() && kept.size() < most; ++text) {
    if (seen.insert(keyOf(*text)).second) kept.push_back(*text);
  }
  std::reverse(kept.begin(), kept.end());
  texts = std::move(kept);
}

void takeLine(std::string_view line, HistoryContent& content) {
  const size_t mark = line.substr(0, MarkPlaces).find(FieldMark);
  if (mark != std::string_view::npos) {
    const int number = fieldNumber(line.substr(0, mark));
    const std::string_view text = line.substr(mark + 1);
    if (number >= 0 && !text.empty()) content.fields[number].push_back(text);
    return;
  }
  const size_t start = line.find_first_not_of(Blanks);
  if (start == std::string_view::npos) return;
  content.commands.push_back(line.substr(start));
  ++content.commandLines;
}

}  // namespace

std::string historyLineOfCommand(const Westring& command) {
  return lineOf(std::string(), toUtf8(command).data());
}

std::string historyLineOfField(int number, const Westring& text) {
  return fieldLine(number, toUtf8(text).data());
}

HistoryContent readHistoryLines(std::string_view content, size_t mostCommands) {
  HistoryContent result;
  BoundedLines lines(content);
  for (std::string_view line; lines.next(line);) takeLine(line.substr(0, line.find('\0')), result);
  keepLast(result.commands, mostCommands, [](std::string_view text) { return text; });
  for (std::vector<std::string_view>& field : result.fields) {
    keepLast(field, field.size(), foldedText);
  }
  return result;
}

std::string historyText(const HistoryContent& content) {
  std::string text;
  const auto add = [&text](const std::string& line) {
    if (!line.empty()) text += line + LineEnd;
  };
  for (const std::string_view command : content.commands) add(lineOf(std::string(), command));
  for (int number = 0; number < FieldHistoryCount; ++number) {
    const std::vector<std::string_view>& field = content.fields[number];
    const size_t first = field.size() - std::min(field.size(), KeptFieldEntries);
    for (size_t i = first; i < field.size(); ++i) add(fieldLine(number, field[i]));
  }
  return text;
}

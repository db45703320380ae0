#include "fileops/description_lines.h"

namespace {

constexpr std::string_view Blanks = " \t";
constexpr std::string_view LineBreaks = "\r\n";
constexpr std::string_view NotInNames = "\"\r\n";
constexpr std::string_view LineEnd = "\r\n";

std::string_view withoutLineEnd(std::string_view line) {
  const size_t last = line.find_last_not_of(LineBreaks);
  return last == std::string_view::npos ? std::string_view() : line.substr(0, last + 1);
}

std::string_view skipBlanks(std::string_view text) {
  const size_t first = text.find_first_not_of(Blanks);
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

DescriptionLines::Line parseLine(std::string_view whole) {
  DescriptionLines::Line line;
  line.whole = whole;
  const std::string_view body = skipBlanks(withoutLineEnd(whole));
  const bool quoted = !body.empty() && body[0] == '"';
  const size_t start = quoted ? 1 : 0;
  size_t end = quoted ? body.find('"', 1) : body.find_first_of(Blanks);
  if (end == std::string_view::npos) end = body.size();
  line.name = body.substr(start, end - start);
  line.text = skipBlanks(body.substr(std::min(body.size(), quoted ? end + 1 : end)));
  return line;
}

}  // namespace

void DescriptionLines::parse(std::string content) {
  texts_.clear();
  lines_.clear();
  content_ = std::move(content);
  const std::string_view all = content_;
  for (size_t start = 0; start < all.size();) {
    const size_t feed = all.find('\n', start);
    const size_t end = feed == std::string_view::npos ? all.size() : feed + 1;
    lines_.push_back(parseLine(all.substr(start, end - start)));
    if (!lines_.back().name.empty()) texts_.try_emplace(lines_.back().name, lines_.back().text);
    start = end;
  }
}

const std::string_view* DescriptionLines::find(std::string_view name) const {
  const auto found = texts_.find(name);
  return found == texts_.end() ? nullptr : &found->second;
}

bool canBeDescribed(std::string_view name) {
  return !name.empty() && name.find_first_of(NotInNames) == std::string_view::npos;
}

std::string descriptionLine(std::string_view name, std::string_view text) {
  const bool quoted = name.find_first_of(Blanks) != std::string_view::npos;
  std::string line;
  line.reserve(name.size() + text.size() + LineEnd.size() + 3);
  if (quoted) line += '"';
  line += name;
  if (quoted) line += '"';
  line += ' ';
  line += text;
  line += LineEnd;
  return line;
}

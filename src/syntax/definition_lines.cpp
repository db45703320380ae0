#include "syntax/definition_lines.h"

#include <algorithm>

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view WhiteSpace = " \t\n\v\f\r";
constexpr char Continues = '\\';

bool continues(std::string_view line) {
  return !line.empty() && line.back() == Continues;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(WhiteSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(WhiteSpace) - first + 1);
}

DefinitionLines::DefinitionLines(std::string_view content) : rest_(content) {
  if (rest_.starts_with(ByteOrderMark)) rest_.remove_prefix(ByteOrderMark.size());
}

std::string_view DefinitionLines::nextPhysical() {
  const size_t end = std::min(rest_.find('\n'), rest_.size());
  std::string_view line = rest_.substr(0, end);
  rest_.remove_prefix(std::min(end + 1, rest_.size()));
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

bool DefinitionLines::next(std::string_view& line) {
  while (!rest_.empty()) {
    line = trimmed(nextPhysical());
    if (continues(line)) {
      join(line);
      line = joined_;
    }
    if (line.size() <= LongestLine) return true;
  }
  return false;
}

void DefinitionLines::join(std::string_view first) {
  joined_ = first;
  while (continues(joined_)) {
    joined_.pop_back();
    if (rest_.empty()) return;
    joined_ += nextPhysical();
  }
}

bool splitRule(std::string_view line, RuleLine& rule) {
  const size_t colon = line.find(':');
  if (colon == std::string_view::npos) return false;
  std::string_view head = trimmed(line.substr(0, colon));
  const std::string_view rest = trimmed(line.substr(colon + 1));

  const size_t second = rest.find(':');
  rule.className = rest.substr(0, second);
  rule.hasFields = second != std::string_view::npos;
  rule.fields = rule.hasFields ? rest.substr(second + 1) : std::string_view();

  const size_t slash = head.find('/');
  rule.flags = slash == std::string_view::npos ? std::string_view() : head.substr(slash + 1);
  head = head.substr(0, slash);
  const size_t list = head.find('(');
  const bool hasList = list != std::string_view::npos && head.back() == ')';
  rule.keyword = hasList ? head.substr(0, list) : head;
  rule.states = hasList ? head.substr(list + 1, head.size() - list - 2) : std::string_view();
  return true;
}

std::string_view cutField(std::string_view& fields) {
  const size_t end = std::min(fields.find(':'), fields.size());
  const std::string_view field = fields.substr(0, end);
  fields.remove_prefix(std::min(end + 1, fields.size()));
  return field;
}

std::string cutProtectedField(std::string_view& fields) {
  std::string field;
  size_t at = 0;
  for (; at < fields.size() && fields[at] != ':'; ++at) {
    if (fields[at] == '\\' && at + 1 < fields.size()) ++at;
    field += fields[at];
  }
  fields.remove_prefix(std::min(at + 1, fields.size()));
  return std::string(trimmed(field));
}

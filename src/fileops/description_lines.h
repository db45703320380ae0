#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// The text of a description file: one line for each described file, the name (in double quotes when
// it holds blanks), blanks, free text. All of it is kept byte for byte.
class DescriptionLines {
 public:
  struct Line {
    std::string_view whole;  // with its line end, if it has one
    std::string_view name;   // empty on a line without one
    std::string_view text;
  };

  DescriptionLines() = default;
  DescriptionLines(const DescriptionLines&) = delete;
  DescriptionLines& operator=(const DescriptionLines&) = delete;

  void parse(std::string content);
  const std::vector<Line>& lines() const { return lines_; }
  // The description of a file by its exact name; null without one.
  const std::string_view* find(std::string_view name) const;

 private:
  std::string content_;
  std::vector<Line> lines_;
  std::unordered_map<std::string_view, std::string_view> texts_;  // of the first line of a name
};

// False for names that no line can hold: with a double quote or a line break.
bool canBeDescribed(std::string_view name);
std::string descriptionLine(std::string_view name, std::string_view text);

#pragma once

#include <string>
#include <string_view>

// Without white space (of ASCII) at either end.
std::string_view trimmed(std::string_view text);

// The lines of a file of definitions, trimmed. One that ends in a backslash loses it and takes the
// next one as it stands, again while the result ends in one. A line of more than LongestLine bytes,
// however it came about, is passed over as a whole.
class DefinitionLines {
 public:
  static constexpr size_t LongestLine = 65536;

  // `content` must stay for as long as this is asked. A byte order mark isn't part of it.
  explicit DefinitionLines(std::string_view content);

  // False at the end. Blank lines come too. The view is good until the next call.
  bool next(std::string_view& line);

 private:
  std::string_view nextPhysical();
  void join(std::string_view first);

  std::string_view rest_;
  std::string joined_;
};

// A rule cut into its parts: keyword(states)/flags:class:fields
struct RuleLine {
  std::string_view keyword;
  std::string_view states;  // empty without a list
  std::string_view flags;
  std::string_view className;
  std::string_view fields;
  bool hasFields = false;  // a ":" stands behind the class

  bool hasFlag(char flag) const { return flags.find(flag) != std::string_view::npos; }
};

// False without a ":".
bool splitRule(std::string_view line, RuleLine& rule);

// Cuts the next field off: up to the next ":" or the end.
std::string_view cutField(std::string_view& fields);
// The same where a backslash protects the character behind it; trimmed.
std::string cutProtectedField(std::string_view& fields);

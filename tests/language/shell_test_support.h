#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "foundation/utf8.h"
#include "foundation/westring.h"

// What /bin/sh writes when it runs the command.
inline std::string outputOfShell(const Westring& command) {
  FILE* pipe = popen(toUtf8(command).data(), "r");
  std::string output;
  if (pipe == nullptr) return output;
  char buffer[4096];
  for (size_t got; (got = fread(buffer, 1, sizeof buffer, pipe)) > 0;) output.append(buffer, got);
  pclose(pipe);
  return output;
}

// File names that would do something else than name a file, if the shell saw them bare.
inline const std::vector<std::string>& hostileNames() {
  static const std::vector<std::string> names = {"plain.txt",
                                                 "a b",
                                                 " a",
                                                 "a ",
                                                 "  ",
                                                 "a\tb",
                                                 "\t",
                                                 "a\nb",
                                                 "\n",
                                                 "\n\n",
                                                 "a\n\nb\n",
                                                 "a\rb",
                                                 "'",
                                                 "''",
                                                 "a'b",
                                                 "\"",
                                                 "a\"b",
                                                 "\"'\"'",
                                                 "\\",
                                                 "a\\",
                                                 "\\\\",
                                                 "\\n",
                                                 "a\\\nb",
                                                 "$",
                                                 "$HOME",
                                                 "${HOME}",
                                                 "$(echo pwned)",
                                                 "`echo pwned`",
                                                 "a;echo pwned",
                                                 "a|cat",
                                                 "a&echo pwned&",
                                                 "a&&b",
                                                 "(a)",
                                                 "()",
                                                 "<a",
                                                 ">a",
                                                 "a>b",
                                                 "*",
                                                 "?",
                                                 "[a-z]*",
                                                 "{a,b}",
                                                 "#",
                                                 "#a",
                                                 "a#b",
                                                 "~",
                                                 "~root",
                                                 "!",
                                                 "!!",
                                                 "!$",
                                                 "-",
                                                 "-n",
                                                 "--",
                                                 "--help",
                                                 "-rf",
                                                 "a=b",
                                                 "=a",
                                                 "^a",
                                                 "%1",
                                                 "%s",
                                                 "%d%n",
                                                 "@",
                                                 ",",
                                                 ":",
                                                 "if",
                                                 "\x01",
                                                 "\x02\x1b[31m\x7f",
                                                 "\x7f",
                                                 "caf\xC3\xA9",
                                                 "caf\xE9",
                                                 "\xFF\xFE",
                                                 "\xC0\x80",
                                                 "\xE2\x80\xA8",
                                                 "\xF0\x9F\x98\x80",
                                                 "'\n'",
                                                 "\n'; echo pwned; '",
                                                 "\"; echo pwned; \"",
                                                 "$'a'",
                                                 "a\n-b",
                                                 "\\$(echo pwned)",
                                                 "\\`echo pwned`",
                                                 "'$(echo pwned)'",
                                                 "\\\\$HOME",
                                                 "\\;echo pwned",
                                                 std::string(255, ' '),
                                                 std::string(255, '\''),
                                                 std::string(255, '\n'),
                                                 std::string(255, '\\')};
  return names;
}

// A name of `length` bytes without 0 and '/', drawn from characters that shells care for.
template <class Random>
std::string randomName(Random& random, size_t length) {
  static const char letters[] = " \t\n\r'\"\\$`!;&|()<>*?[]{}#~-=%^ab1\x01\x7f\xC3\xA9\xFF";
  std::string name;
  while (name.size() < length) name += letters[random() % (sizeof letters - 1)];
  return name;
}

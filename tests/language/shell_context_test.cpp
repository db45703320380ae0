#include "language/shell_context.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

#include "foundation/utf8.h"
#include "language/environment.h"
#include "language/shell_test_support.h"

namespace {

// The template with the name in place of each '@'; "(refused)" when the name can't stand there.
Westring filled(const std::string& pattern, const std::string& name) {
  ShellContext shell;
  Westring result;
  for (char ch : pattern) {
    if (ch == '@') {
      std::optional<Westring> quoted = shell.quote(decodeFileName(name.c_str()));
      if (!quoted) return L"(refused)";
      result += *quoted;
    } else {
      shell.typed(ch);
      result += static_cast<wchar_t>(ch);
    }
  }
  return result;
}

std::string text(const std::string& pattern, const std::string& name) {
  return toUtf8(filled(pattern, name)).data();
}

}  // namespace

TEST(ShellContext, ABareNameIsQuotedWithBackslashes) {
  EXPECT_EQ(text("ls @", "a b"), "ls a\\ b");
  EXPECT_EQ(text("@", "a'b"), "a\\'b");
}

TEST(ShellContext, BetweenQuotesTheNameStaysWhole) {
  EXPECT_EQ(text("ls \"@\"", "a b"), "ls \"a b\"");
  EXPECT_EQ(text("ls '@'", "a b"), "ls 'a b'");
  EXPECT_EQ(text("ls '@'", "it's"), "ls 'it'\\''s'");
  EXPECT_EQ(text("ls \"@\"", "a\"$x"), "ls \"a\\\"\\$x\"");
  EXPECT_EQ(text("ls \"x\" @", "a b"), "ls \"x\" a\\ b");
  EXPECT_EQ(text("ls \"'\"@", "a b"), "ls \"'\"a\\ b");
  EXPECT_EQ(text("ls \\'@", "a b"), "ls \\'a\\ b");
  EXPECT_EQ(text("ls '\\'@", "a b"), "ls '\\'a\\ b");
}

TEST(ShellContext, ALeadingDashGetsADirectoryOnlyAtTheStartOfAWord) {
  EXPECT_EQ(text("rm @", "-rf"), "rm ./-rf");
  EXPECT_EQ(text("@", "-rf"), "./-rf");
  EXPECT_EQ(text("rm '@'", "-rf"), "rm './-rf'");
  EXPECT_EQ(text("rm \"@\"", "-rf"), "rm \"./-rf\"");
  EXPECT_EQ(text("a;@", "-rf"), "a;./-rf");
  EXPECT_EQ(text("rm /d/@", "-rf"), "rm /d/-rf");
  EXPECT_EQ(text("rm @@", "-a"), "rm ./-a-a");
  EXPECT_EQ(text("rm \\ @", "-a"), "rm \\ -a");
}

TEST(ShellContext, AnEmptyNameGivesNothing) {
  EXPECT_EQ(text("ls @x", ""), "ls x");
}

TEST(ShellContext, TheShellReadsHostileNamesAsThemselvesInEveryPlace) {
  // What each template writes around the name.
  struct Place {
    const char* pattern;
    const char* before;
    const char* after;
  };
  const Place places[] = {
      {"printf %s x@", "x", ""},
      {"printf %s \"x@\"", "x", ""},
      {"printf %s 'x@'", "x", ""},
      {"printf %s \"x\"'y'@z", "xy", "z"},
      {"printf %s \"x $@\"", "x $", ""},
      {"printf %s \\x'@'\"-@-\"", "x", nullptr},
      {"true; printf %s x@; true", "x", ""},
  };
  for (const std::string& name : hostileNames()) {
    for (const Place& place : places) {
      std::string expected = place.before + name;
      expected += place.after != nullptr ? place.after : "-" + name + "-";
      const Westring command = filled(place.pattern, name);
      EXPECT_EQ(outputOfShell(command), expected) << toUtf8(command).data();
    }
  }
}

TEST(ShellContext, InsideSubstitutionsANameIsReadAsItselfOrRefused) {
  for (const char* pattern : {"printf %s \"$(printf %s x@y)\"", "printf %s \"`printf %s x@y`\""}) {
    for (const std::string& name : hostileNames()) {
      const Westring command = filled(pattern, name);
      const bool isBackticks = strchr(pattern, '`') != nullptr;
      if (name.find_first_of(isBackticks ? "\n\"" : "\n") != std::string::npos) {
        EXPECT_EQ(std::string(toUtf8(command).data()), "(refused)");
      } else {
        EXPECT_EQ(outputOfShell(command), "x" + name + "y") << toUtf8(command).data();
      }
    }
  }
}

TEST(ShellContext, ANewlineIsRefusedWhereNoQuotesAreSure) {
  EXPECT_EQ(text("true # @", "a\nb"), "(refused)");
  EXPECT_EQ(text("cat <<E @", "a\nb"), "(refused)");
  EXPECT_EQ(text("echo $'x' @", "a\nb"), "(refused)");
  EXPECT_EQ(text("echo ${X} @", "a\nb"), "(refused)");
  EXPECT_EQ(text("echo a#b @", "a\nb"), "echo a#b a'\n'b");
}

TEST(ShellContext, ATypedBackslashQuotesTheFirstCharacter) {
  EXPECT_EQ(text("ls \\@", ";x"), "ls \\;x");
  EXPECT_EQ(text("ls \\@", "a;"), "ls \\a\\;");
  EXPECT_EQ(text("ls \\@", "\nx"), "(refused)");
  EXPECT_EQ(text("ls \"\\@\"", "$x"), "ls \"\\$x\"");
}

TEST(ShellContext, NoNameIsTakenForAVariable) {
  sessionEnvironment().set("TD_NAME", "value");
  for (const char* pattern : {"printf %s x@", "printf %s 'x@'", "printf %s \"x@\""}) {
    for (const char* name : {"$TD_NAME", "a$TD_NAME", "\\$TD_NAME", "\\\\$TD_NAME", "'$TD_NAME"}) {
      const Westring command = expandCommandVariables(filled(pattern, name));
      EXPECT_EQ(outputOfShell(command), std::string("x") + name) << toUtf8(command).data();
    }
  }
  sessionEnvironment().set("TD_NAME", nullptr);
}

// Whatever the user typed around it, a name must not run anything: no file "pwned" appears.
TEST(ShellContext, RandomTemplatesNeverRunAName) {
  char directory[] = "/tmp/td-shell-XXXXXX";
  ASSERT_NE(mkdtemp(directory), nullptr);
  const std::string mark = std::string(directory) + "/pwned";
  const std::vector<std::string> names = {">" + mark,
                                          ";>" + mark + ";",
                                          "`>" + mark + "`",
                                          "$(>" + mark + ")",
                                          "\n>" + mark + "\n",
                                          "'\n>" + mark + " ",
                                          "\">" + mark + " ",
                                          "\\\n>" + mark + "\n",
                                          "\\;>" + mark + " ",
                                          "|>" + mark + " ",
                                          "&>" + mark + "&",
                                          "(>" + mark + ")",
                                          "x\\`>" + mark + "\\`"};
  const std::string pieces[] = {"'", "\"", "\\", "@",  " ",    "a", "`",  "$(", ")",     "@",  "#",
                                "$", "{",  "}",  "@ ", "<<E ", ";", "$'", "@",  "\"@\"", "'@'"};
  std::mt19937 random(7);
  for (int round = 0; round < 1500; ++round) {
    std::string pattern = ": ";
    for (size_t left = 1 + random() % 8; left > 0; --left) {
      pattern += pieces[random() % std::size(pieces)];
    }
    const Westring command = filled(pattern, names[random() % names.size()]);
    setenv("TD_COMMAND", toUtf8(command).data(), 1);
    outputOfShell(L"exec >/dev/null 2>&1 </dev/null; cd /; sh -c \"$TD_COMMAND\"");
    ASSERT_NE(access(mark.c_str(), F_OK), 0) << pattern << "\n" << toUtf8(command).data();
  }
  unsetenv("TD_COMMAND");
  rmdir(directory);
}

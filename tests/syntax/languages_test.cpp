#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>

#include "foundation/data_paths.h"
#include "foundation/utf8.h"
#include "foundation/wild_match.h"
#include "options/colours.h"
#include "support/files.h"
#include "support/temp_dir.h"
#include "syntax/definition_lines.h"
#include "syntax/definitions_file.h"
#include "syntax/definitions_reader.h"
#include "syntax/picture.h"

// The definitions that come with the program, each language on a sample of it.
namespace {

namespace fs = std::filesystem;

constexpr char Nobody[] = "none";  // a state that no element is: for rules that only changes reach

fs::path testDirectory() {
  const std::string golden = goldenPath(__FILE__, "any");
  return fs::path(golden).parent_path().parent_path();
}

std::string shippedFile() {
  return readFile(testDirectory().parent_path().parent_path() / "data/tdsyntax.ini");
}

std::vector<fs::path> samples() {
  std::vector<fs::path> result;
  for (const auto& item : fs::directory_iterator(testDirectory() / "samples")) {
    result.push_back(item.path());
  }
  std::sort(result.begin(), result.end());
  return result;
}

struct ShippedRule {
  std::string section;  // its head; "" for a class
  std::string line;
  RuleLine parts;
};

// Calls `see` for each line of the file with the head of its section.
template <class See>
void forEachLine(const std::string& content, See see) {
  DefinitionLines lines(content);
  std::string head;
  std::string_view line;
  while (lines.next(line)) {
    if (line.empty()) continue;
    if (line.starts_with('[')) {
      head = line;
    } else {
      see(head, std::string(line));
    }
  }
}

constexpr char ClassesHead[] = "[Colour Classes]";

std::set<std::string> shippedClasses(const std::string& content) {
  std::set<std::string> names;
  forEachLine(content, [&](const std::string& head, const std::string& line) {
    if (head == ClassesHead) names.insert(line.substr(0, line.find(':')));
  });
  return names;
}

template <class See>
void forEachRule(const std::string& content, See see) {
  forEachLine(content, [&](const std::string& head, const std::string& line) {
    if (head.empty() || head == ClassesHead) return;
    RuleLine parts;
    EXPECT_TRUE(splitRule(line, parts)) << head << "\n" << line << "\nis no rule";
    see(head, line, parts);
  });
}

bool givesARule(const std::string& line, const RuleLine& parts) {
  const auto read = readSyntax("[any:*]\n" + line + "\n", L"any", 0);
  if (parts.keyword == "escape") return !parts.className.empty();
  if (parts.keyword == "wordchars") {
    return read->wordCharacters != SyntaxDefinitions(0).wordCharacters;
  }
  return read->wordLists.size() + read->symbolLists.size() + read->numbers.size() +
             read->elements.size() + read->changes.size() ==
         1;
}

TEST(Languages, EachSampleLooksAsItsGoldenPicture) {
  const std::string content = shippedFile();
  const bool update = getenv("TD_UPDATE_GOLDEN") != nullptr;
  int looked = 0;
  for (const fs::path& sample : samples()) {
    const std::string name = sample.filename();
    const std::string golden = goldenPath(__FILE__, name);
    const std::string seen = syntaxPicture(content, name, readFile(sample));
    EXPECT_NE(seen, "") << "no section fits " << name;
    if (update) {
      fs::create_directories(fs::path(golden).parent_path());
      writeFile(golden, seen);
    }
    EXPECT_EQ(seen, readFile(golden)) << name;
    ++looked;
  }
  EXPECT_GT(looked, 0);
}

TEST(Languages, EachGoldenPictureHasASample) {
  const fs::path golden(goldenPath(__FILE__, "any"));
  for (const auto& item : fs::directory_iterator(golden.parent_path())) {
    EXPECT_TRUE(fs::exists(testDirectory() / "samples" / item.path().stem())) << item.path();
  }
}

// The name of a sample that the section is for; "" without one.
Westring nameThatFits(const std::string& head) {
  const size_t colon = head.find(':');
  const Westring pattern = decodeFileName(head.substr(colon + 1, head.size() - colon - 2).c_str());
  for (const fs::path& sample : samples()) {
    Westring name = decodeFileName(sample.filename().c_str());
    if (wildMatch(pattern.data(), name.data())) return name;
  }
  return Westring();
}

TEST(Languages, EachSectionIsShownByASample) {
  std::set<std::string> heads;
  forEachLine(shippedFile(), [&](const std::string& head, const std::string&) {
    if (!head.empty() && head != ClassesHead) heads.insert(head);
  });
  for (const std::string& head : heads) EXPECT_FALSE(nameThatFits(head).empty()) << head;
  EXPECT_FALSE(heads.empty());
}

TEST(Languages, TheSharedDirectoryGivesThemToEachSample) {
  TempDir home;
  setProgramPath(L"/usr/bin/td");
  setConfigurationFile(L"");
  setenv("HOME", home.path().c_str(), 1);
  setenv("TD_SHARE", (testDirectory().parent_path().parent_path() / "data").c_str(), 1);
  for (const fs::path& sample : samples()) {
    const SyntaxLoad load = loadSyntax(decodeFileName(sample.c_str()), L"");
    EXPECT_EQ(load.status, 0) << sample;
    EXPECT_NE(load.definitions, nullptr) << sample;
  }
}

TEST(Languages, AScriptIsKnownByItsInterpreter) {
  const std::string content = shippedFile();
  for (const char* line : {"#!/bin/sh -e",          "#!/bin/bash",
                           "#!/usr/bin/env zsh",    "#!/bin/ksh93",
                           "#!/usr/bin/python3.11", "#!/usr/bin/env -S python3 -B",
                           "#!/usr/bin/perl -w",    "#!/usr/bin/env ruby",
                           "#!/usr/bin/php",        "#!/usr/bin/lua5.4",
                           "#!/usr/bin/env tclsh",  "#!/usr/bin/wish8.6",
                           "#!/usr/bin/expect -f",  "#!/usr/bin/env Rscript",
                           "#!/usr/bin/julia",      "#!/usr/bin/awk -f",
                           "#!/usr/bin/gawk -f",    "#!/usr/bin/env node",
                           "#!/usr/bin/env deno",   "#!/usr/bin/make -f",
                           "#!/usr/bin/env pwsh",   "#!/usr/bin/env swift",
                           "#!/usr/bin/env scala",  "#!/usr/bin/env dart",
                           "#!/usr/bin/env runghc"}) {
    EXPECT_NE(definitionsFor(content, "script", line, 0), nullptr) << line;
  }
  EXPECT_EQ(definitionsFor(content, "script", "#!/usr/bin/unheard", 0), nullptr);
}

TEST(Languages, NoRuleIsDropped) {
  int looked = 0;
  forEachRule(shippedFile(),
              [&](const std::string& head, const std::string& line, const RuleLine& parts) {
                EXPECT_TRUE(givesARule(line, parts)) << head << "\n" << line;
                ++looked;
              });
  EXPECT_GT(looked, 0);
}

TEST(Languages, EachClassOfARuleExists) {
  const std::string content = shippedFile();
  const std::set<std::string> classes = shippedClasses(content);
  forEachRule(
      content, [&](const std::string& head, const std::string& line, const RuleLine& parts) {
        if (parts.keyword == "escape" || parts.keyword == "wordchars" || parts.className.empty())
          return;
        const std::string name(trimmed(parts.className));
        EXPECT_TRUE(classes.contains(name)) << head << "\n" << line;
      });
  EXPECT_FALSE(classes.empty());
}

TEST(Languages, EachClassIsUsed) {
  const std::string content = shippedFile();
  std::set<std::string> unused = shippedClasses(content);
  forEachRule(content, [&](const std::string&, const std::string&, const RuleLine& parts) {
    unused.erase(std::string(trimmed(parts.className)));
  });
  EXPECT_EQ(unused, std::set<std::string>());
}

// A run of word characters is taken whole: what is looked for must not hide in one.
TEST(Languages, EachWordAndEachEndCanBeMet) {
  const std::string content = shippedFile();
  const SyntaxFlags usual = SyntaxDefinitions(0).wordCharacters;
  int looked = 0;
  for (const fs::path& sample : samples()) {
    const auto read = definitionsFor(content, sample.filename(), readFile(sample), 0);
    ASSERT_NE(read, nullptr) << sample;
    for (const CSyntaxElement& element : read->elements) {
      if (element.end.empty()) continue;
      const unsigned char first = syntaxIndex(element.end.first());
      EXPECT_TRUE(usual[first] || !read->wordCharacters[first])
          << sample.filename() << ": " << element.name << " doesn't end behind a word";
      ++looked;
    }
  }
  forEachRule(content, [&](const std::string& head, const std::string&, const RuleLine& parts) {
    if (parts.keyword != "words") return;
    const auto read = readSyntax(content, nameThatFits(head), 0);
    std::istringstream words{std::string(parts.fields)};
    for (std::string word; words >> word; ++looked) {
      const bool isWhole = std::all_of(word.begin(), word.end(), [&](char character) {
        return read->wordCharacters[syntaxIndex(character)];
      });
      EXPECT_TRUE(isWhole && !isdigit(static_cast<unsigned char>(word[0]))) << head << " " << word;
    }
  });
  EXPECT_GT(looked, 0);
}

// A rule in a state that no element opens would never be seen.
TEST(Languages, EachStateThatARuleNamesIsThere) {
  const std::string content = shippedFile();
  for (const fs::path& sample : samples()) {
    const auto read = definitionsFor(content, sample.filename(), readFile(sample), 0);
    if (read == nullptr) continue;  // another test's business
    std::set<std::string> names = {Nobody, ""};
    for (const CSyntaxElement& element : read->elements) names.insert(element.name);
    auto check = [&](const auto& rules) {
      for (const auto& rule : rules) {
        for (const std::string& name : rule.contexts.names()) {
          EXPECT_TRUE(names.contains(name)) << sample.filename() << " has no state " << name;
        }
      }
    };
    check(read->wordLists);
    check(read->symbolLists);
    check(read->numbers);
    check(read->elements);
    check(read->changes);
    for (const CSyntaxStateChange& change : read->changes) {
      const bool isMeant = change.target != nullptr || change.targetName == Nobody ||
                           change.action == CSyntaxStateChange::Action::Pop;
      EXPECT_TRUE(isMeant) << sample.filename() << " has no target " << change.targetName;
    }
  }
}

TEST(Languages, EachClassCanBeReadOnTheViewersBackground) {
  constexpr int Background = 0xF0;
  constexpr int Dark[] = {0, 1, 2, 3, 4, 5, 8, 9};  // less than 3.5 times as bright as it
  defaultColours();
  const unsigned char text = colourOf(Colour::FileViewer);
  forEachLine(shippedFile(), [&](const std::string& head, const std::string& line) {
    if (head != ClassesHead) return;
    const Westring phrase = decodeFileName(line.substr(line.find(':') + 1).c_str());
    const unsigned char colour = colourFromText(trim(phrase).data(), text);
    EXPECT_EQ(colour & Background, text & Background) << line;
    EXPECT_EQ(std::count(std::begin(Dark), std::end(Dark), colour & ~Background), 0) << line;
  });
}

}  // namespace

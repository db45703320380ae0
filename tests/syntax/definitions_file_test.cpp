#include "syntax/definitions_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>

#include "foundation/data_paths.h"
#include "support/as_user.h"
#include "support/exact_text.h"
#include "support/files.h"
#include "syntax/syntax.h"

namespace {

// A home and a shared directory of the test's own.
class DefinitionsFile : public testing::Test {
 protected:
  DefinitionsFile() {
    setProgramPath(L"/usr/bin/td");
    setConfigurationFile(L"");
    setenv("HOME", home_.path().c_str(), 1);
    setenv("TD_SHARE", shared_.path().c_str(), 1);
    home_.makeDir(".tdx");
  }

  // A file whose section fits C files and gives rules of one colour.
  static std::string definitions(const std::string& colour) {
    return "[C:*.c]\nnumber:" + colour + "\n";
  }
  void writeOwn(const std::string& name, const std::string& content) {
    home_.write(".tdx/" + name, content);
  }
  static int colourFor(const wchar_t* path) {
    const SyntaxLoad load = loadSyntax(path, L"");
    EXPECT_EQ(load.status, 0);
    constexpr int Foreground = 0x0F;
    return load.definitions ? load.definitions->numbers.at(0).colour & Foreground : -1;
  }

  TempDir home_;
  TempDir shared_;
};

constexpr int Red = 4;
constexpr int Green = 2;
constexpr int White = 7;
constexpr int Cyan = 3;

TEST_F(DefinitionsFile, WithoutAFileThereAreNoColoursAndNoComplaint) {
  const SyntaxLoad load = loadSyntax(L"/a/b.c", L"");
  EXPECT_EQ(load.definitions, nullptr);
  EXPECT_EQ(load.status, 0);
}

TEST_F(DefinitionsFile, TheUsersOwnFilesComeFirstAndTheNamedOneBeforeThePlainOne) {
  shared_.write("syntax.ini", definitions("cyan"));
  EXPECT_EQ(colourFor(L"/a/b.c"), Cyan);
  shared_.write("tdsyntax.ini", definitions("white"));
  EXPECT_EQ(colourFor(L"/a/b.c"), White);
  writeOwn("syntax.ini", definitions("green"));
  EXPECT_EQ(colourFor(L"/a/b.c"), Green);
  writeOwn("tdsyntax.ini", definitions("red"));
  EXPECT_EQ(colourFor(L"/a/b.c"), Red);
}

TEST_F(DefinitionsFile, OnlyTheFirstFileThatIsThereCounts) {
  shared_.write("tdsyntax.ini", definitions("white"));
  writeOwn("tdsyntax.ini", "[Pascal:*.pas]\nnumber:red\n");
  EXPECT_EQ(loadSyntax(L"/a/b.c", L"").definitions, nullptr);
}

TEST_F(DefinitionsFile, WithAnotherConfigurationTheShippedFileIsFoundToo) {
  const TempDir other;
  setConfigurationFile(other.wide("work.ini"));
  shared_.write("tdsyntax.ini", definitions("white"));
  EXPECT_EQ(colourFor(L"/a/b.c"), White);
  other.write("worksyntax.ini", definitions("red"));
  EXPECT_EQ(colourFor(L"/a/b.c"), Red);
  setConfigurationFile(L"");
}

TEST_F(DefinitionsFile, TheBaseNameOfTheTextDecides) {
  writeOwn("tdsyntax.ini", definitions("red"));
  EXPECT_EQ(colourFor(L"/x.h/b.C"), Red);
  EXPECT_EQ(colourFor(L"b.c"), Red);
  EXPECT_EQ(colourFor(L"/x.c/b"), -1);
}

TEST_F(DefinitionsFile, WhereTheUsersDirectoryIsAFileTheSharedOneServes) {
  home_.write("file", "");
  setenv("HOME", home_.path("file").c_str(), 1);
  EXPECT_EQ(loadSyntax(L"b.c", L"").status, 0);
  shared_.write("tdsyntax.ini", definitions("white"));
  EXPECT_EQ(colourFor(L"b.c"), White);
}

TEST_F(DefinitionsFile, AFileThatCanNotBeReadIsTold) {
  home_.makeDir(".tdx/tdsyntax.ini");
  const SyntaxLoad load = loadSyntax(L"a.c", L"");
  EXPECT_EQ(load.status, EISDIR);
  EXPECT_EQ(exact(load.file), exact(home_.wide(".tdx/tdsyntax.ini")));
  EXPECT_EQ(load.definitions, nullptr);
}

TEST_F(DefinitionsFile, AFileThatMayNotBeReadIsTold) {
  writeOwn("tdsyntax.ini", definitions("red"));
  home_.chmod(".tdx/tdsyntax.ini", 0);
  home_.openToAll();
  home_.chmod(".tdx", 0777);
  runAsUser([] { EXPECT_EQ(loadSyntax(L"a.c", L"").status, EACCES); });
}

TEST_F(DefinitionsFile, APipeIsNotWaitedFor) {
  ASSERT_EQ(mkfifo(home_.path(".tdx/tdsyntax.ini").c_str(), 0600), 0);
  const SyntaxLoad load = loadSyntax(L"a.c", L"");
  EXPECT_EQ(load.status, EINVAL);
  EXPECT_EQ(load.definitions, nullptr);
}

TEST_F(DefinitionsFile, AFileOverTheLimitIsToldAndGivesNoColours) {
  constexpr size_t Limit = 4 * 1024 * 1024;
  const std::string rules = definitions("red");
  writeOwn("tdsyntax.ini", rules + std::string(Limit - rules.size(), '\n'));
  EXPECT_EQ(colourFor(L"b.c"), Red);
  writeOwn("tdsyntax.ini", rules + std::string(Limit - rules.size() + 1, '\n'));
  const SyntaxLoad load = loadSyntax(L"a.c", L"");
  EXPECT_EQ(load.status, EFBIG);
  EXPECT_EQ(load.definitions, nullptr);
}

TEST_F(DefinitionsFile, AnOwnFileMayBeALink) {
  home_.write("mine", definitions("red"));
  home_.link("../mine", ".tdx/tdsyntax.ini");
  EXPECT_EQ(colourFor(L"b.c"), Red);
}

TEST_F(DefinitionsFile, AScriptWithoutAnEndingIsKnownByItsFirstLine) {
  writeOwn("tdsyntax.ini", "[Shell:*.{sh,bash}]\nnumber:red\n[C:*.c]\nnumber:green\n");
  auto fits = [](const wchar_t* name, const wchar_t* line) {
    return loadSyntax(name, line).definitions != nullptr;
  };
  EXPECT_TRUE(fits(L"configure", L"#!/bin/bash"));
  EXPECT_TRUE(fits(L"configure", L"#! /bin/sh -e"));
  EXPECT_FALSE(fits(L"configure", L"# /bin/sh"));
  EXPECT_FALSE(fits(L"configure", L"#!/usr/bin/python3"));
  // The name comes first.
  constexpr int Foreground = 0x0F;
  const SyntaxLoad named = loadSyntax(L"a.c", L"#!/bin/sh");
  ASSERT_NE(named.definitions, nullptr);
  EXPECT_EQ(named.definitions->numbers.at(0).colour & Foreground, Green);
}

TEST_F(DefinitionsFile, LoadingSwitchesTheEngineOnOrOff) {
  writeOwn("tdsyntax.ini", "[C:*.c]\nblockcomment:red:(:)\n");
  CSyntax engine;
  engine.load(L"/a/b.c");
  EXPECT_TRUE(engine.active());
  engine.skip(L"(");
  engine.load(L"/a/b.c");
  EXPECT_TRUE(engine.state().empty());
  engine.off();
  engine.load(L"/a/b.c");
  EXPECT_TRUE(engine.active());
  engine.load(L"/a/b.h");
  EXPECT_FALSE(engine.active());
}

TEST(Interpreter, IsTheLastPartOfThePathWithoutItsVersion) {
  constexpr struct {
    const wchar_t* line;
    const wchar_t* name;
  } Cases[] = {
      {L"#!/bin/bash", L"bash"},
      {L"#!/usr/bin/python3.11", L"python"},
      {L"#! /usr/bin/perl -w", L"perl"},
      {L"#!perl", L"perl"},
      {L"#!/usr/bin/env python3", L"python"},
      {L"#!/usr/bin/env -S python3 -u", L"python"},
      {L"#!/usr/bin/env -i -u HOME A=1 /opt/bin/ruby2.7", L"ruby"},
      {L"#!/usr/bin/env", L""},
      {L"#!/usr/bin/env -S", L""},
      {L"#!/usr/bin/lua-5.4\r", L"lua"},
      {L"#!/usr/bin/x86-64", L"x"},
      {L"#!/bin/7.1", L""},
      {L"#!", L""},
      {L"#!/bin/", L""},
      {L"", L""},
      {L"# !/bin/sh", L""},
      {L" #!/bin/sh", L""},
  };
  for (const auto& row : Cases) {
    EXPECT_EQ(exact(interpreterOf(row.line)), row.name) << toUtf8(row.line).data();
  }
}

}  // namespace

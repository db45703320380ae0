#include "commander/arguments.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <initializer_list>

#include "foundation/names.h"
#include "support/as_user.h"
#include "support/temp_dir.h"

namespace {

constexpr char Usage[] =
    "Usage:\ttd [ini_file] [-v|-e file_name] [-l|-r directory]\n\t-v: invoke internal "
    "viewer\n\t-e: invoke internal editor\n\t-l: specify left panel's directory\n\t-r: specify "
    "right panel's directory";

Arguments parse(std::initializer_list<std::string> arguments) {
  std::vector<const char*> argv{"td"};
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  return parseArguments(static_cast<int>(argv.size()), argv.data());
}

std::string text(const Westring& wide) {
  return toUtf8(wide).data();
}

void expectExit(const Arguments& result, const char* message) {
  EXPECT_EQ(result.outcome, Arguments::Outcome::Exit);
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_EQ(result.message, message);
}

TEST(Arguments, NothingAsksForNothing) {
  const Arguments result = parse({});
  EXPECT_EQ(result.outcome, Arguments::Outcome::Continue);
  EXPECT_TRUE(result.message.empty());
  for (const Westring* value :
       {&result.fileToEdit, &result.fileToView, &result.leftDirectory, &result.rightDirectory,
        &result.exitScript, &result.configurationFile}) {
    EXPECT_TRUE(value->empty());
  }
}

TEST(Arguments, EachOptionTakesTheNextArgument) {
  const Arguments result =
      parse({"-e", "edited", "-v", "viewed", "-l", "/left", "-r", "/right", "-x", "script"});
  EXPECT_EQ(result.outcome, Arguments::Outcome::Continue);
  EXPECT_EQ(text(result.fileToEdit), "edited");
  EXPECT_EQ(text(result.fileToView), "viewed");
  EXPECT_EQ(text(result.leftDirectory), "/left");
  EXPECT_EQ(text(result.rightDirectory), "/right");
  EXPECT_EQ(text(result.exitScript), "script");
}

TEST(Arguments, OptionsMayBeginWithABackslashAndIgnoreCase) {
  EXPECT_EQ(text(parse({"\\l", "dir"}).leftDirectory), "dir");
  EXPECT_EQ(text(parse({"-R", "dir"}).rightDirectory), "dir");
  EXPECT_EQ(text(parse({"\\E", "file"}).fileToEdit), "file");
  EXPECT_EQ(text(parse({"-V", "file"}).fileToView), "file");
  EXPECT_EQ(text(parse({"-L", "dir"}).leftDirectory), "dir");
  EXPECT_EQ(text(parse({"\\X", "script"}).exitScript), "script");
}

TEST(Arguments, OnlyTheSecondCharacterCounts) {
  EXPECT_EQ(text(parse({"-left", "dir"}).leftDirectory), "dir");
}

TEST(Arguments, ALaterOptionOfTheSameKindReplacesTheEarlier) {
  EXPECT_EQ(text(parse({"-l", "one", "-l", "two"}).leftDirectory), "two");
}

TEST(Arguments, AValueMayLookLikeAnOption) {
  EXPECT_EQ(text(parse({"-e", "-v"}).fileToEdit), "-v");
}

TEST(Arguments, AMissingFileIsToldAndEndsTheProgram) {
  expectExit(parse({"-e"}), "No file specified");
  expectExit(parse({"-v"}), "No file specified");
  expectExit(parse({"-l", "dir", "-e"}), "No file specified");
  expectExit(parse({"-e", ""}), "No file specified");
}

TEST(Arguments, AMissingDirectoryIsEmpty) {
  for (const char* option : {"-l", "-r", "-x"}) {
    const Arguments result = parse({option});
    EXPECT_EQ(result.outcome, Arguments::Outcome::Continue);
    EXPECT_TRUE(result.leftDirectory.empty());
    EXPECT_TRUE(result.rightDirectory.empty());
    EXPECT_TRUE(result.exitScript.empty());
  }
}

TEST(Arguments, AnUnknownOptionShowsTheUsage) {
  for (const char* option : {"-q", "\\q", "-", "\\", "-h", "--help", "-1"}) {
    expectExit(parse({option}), Usage);
  }
}

TEST(Arguments, TheFirstMistakeEndsTheParsing) {
  expectExit(parse({"-q", "-e"}), Usage);
}

TEST(Arguments, AnExistingFileIsTheConfiguration) {
  const TempDir dir;
  dir.write("my.cfg", "");
  dir.link("my.cfg", "link");
  EXPECT_EQ(text(parse({dir.path("my.cfg")}).configurationFile), dir.path("my.cfg"));
  EXPECT_EQ(text(parse({dir.path("link")}).configurationFile), dir.path("link"));
}

TEST(Arguments, AConfigurationNameIsMadeAbsolute) {
  const TempDir dir;
  dir.makeDir("sub");
  dir.write("my.cfg", "");
  EXPECT_EQ(runInChild([&] {
              ASSERT_EQ(chdir(dir.path("sub").c_str()), 0);
              EXPECT_EQ(text(parse({"../my.cfg"}).configurationFile), dir.path("my.cfg"));
            }),
            0);
}

TEST(Arguments, ANameThatTypedTextCantSpellIsFoundAsItStands) {
  const TempDir dir;
  for (const char* name : {"12:30", "a\\b", "raw\xff"}) {
    dir.write(name, "");
    EXPECT_EQ(text(parse({dir.path(name)}).configurationFile), dir.path(name));
  }
  EXPECT_EQ(runInChild([&] {
              ASSERT_EQ(chdir(dir.path().c_str()), 0);
              EXPECT_EQ(text(parse({"12:30"}).configurationFile), dir.path("12:30"));
            }),
            0);
}

TEST(Arguments, AFileOfExactlyThatNameComesBeforeTheRulesOfTypedText) {
  const TempDir dir;
  dir.makeDir("a");
  dir.write("a/b", "");
  EXPECT_EQ(text(parse({dir.path("a\\b")}).configurationFile), dir.path("a/b"));
  dir.write("a\\b", "");
  EXPECT_EQ(text(parse({dir.path("a\\b")}).configurationFile), dir.path("a\\b"));
}

TEST(Arguments, ADirectoryOrAMissingFileIsIgnoredInSilence) {
  const TempDir dir;
  dir.link("nowhere", "dangling");
  for (const std::string& argument :
       {dir.path(), dir.path("missing"), dir.path("dangling"), std::string()}) {
    const Arguments result = parse({argument, "-l", "left"});
    EXPECT_EQ(result.outcome, Arguments::Outcome::Continue);
    EXPECT_TRUE(result.configurationFile.empty()) << argument;
    EXPECT_TRUE(result.rightDirectory.empty());
    EXPECT_EQ(text(result.leftDirectory), "left");
  }
}

TEST(Arguments, ADirectoryWithoutRightsIsNoConfigurationEither) {
  const TempDir dir;
  dir.makeDir("closed");
  dir.chmod("closed", 0);
  dir.openToAll();
  EXPECT_EQ(runAsUser([&] { EXPECT_TRUE(parse({dir.path("closed")}).configurationFile.empty()); }),
            0);
}

TEST(Arguments, AnIgnoredArgumentKeepsAnEarlierConfiguration) {
  const TempDir dir;
  dir.write("one.cfg", "");
  dir.write("two.cfg", "");
  EXPECT_EQ(text(parse({dir.path("one.cfg"), dir.path()}).configurationFile), dir.path("one.cfg"));
  EXPECT_EQ(text(parse({dir.path("one.cfg"), dir.path("two.cfg")}).configurationFile),
            dir.path("two.cfg"));
}

TEST(Arguments, ValuesKeepTheirBytes) {
  EXPECT_EQ(text(parse({"-l", "/raw\xff/\xc3\xa9"}).leftDirectory), "/raw\xff/\xc3\xa9");
}

TEST(Arguments, TheProgramsOwnPathIsAbsolute) {
  const char* plain[] = {"/usr/bin/td"};
  EXPECT_EQ(text(programPathOf(1, plain)), "/usr/bin/td");
  const char* dotted[] = {"/usr/./bin/../bin/td.new"};
  EXPECT_EQ(text(programPathOf(1, dotted)), "/usr/bin/td.new");
  const char* strange[] = {"/a:b/td"};
  EXPECT_EQ(text(programPathOf(1, strange)), "/td");
  EXPECT_EQ(text(programPathOf(0, nullptr)), "/td");
  const char* empty[] = {""};
  EXPECT_EQ(text(programPathOf(1, empty)), "/td");
  const TempDir dir;
  EXPECT_EQ(runInChild([&] {
              ASSERT_EQ(chdir(dir.path().c_str()), 0);
              const char* relative[] = {"./td"};
              EXPECT_EQ(text(programPathOf(1, relative)), dir.path("td"));
            }),
            0);
}

}  // namespace

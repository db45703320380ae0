#include "foundation/names.h"

#include <gtest/gtest.h>

#include "support/exact_text.h"

namespace {
using Rows = std::vector<std::pair<const wchar_t*, const wchar_t*>>;

void expectRows(Westring (*function)(const Westring&), const Rows& rows) {
  for (const auto& [input, expected] : rows) {
    EXPECT_EQ(exact(function(Westring(input))), expected) << Westring(input).data();
  }
}
}  // namespace

TEST(Names, DirPartGoesUpToTheLastSeparator) {
  expectRows(dirPart, {{L"/etc", L""},
                       {L"C:/x", L"C:/"},
                       {L"C:\\x", L"C:\\"},
                       {L"a\\b", L"a"},
                       {L"/a/b", L"/a"},
                       {L"/a/b/", L"/a/b"},
                       {L"a/b\\c", L"a/b"},
                       {L"a\\b/c", L"a\\b"},
                       {L"plain", L""},
                       {L"ab/c", L"ab"},
                       {L"", L""}});
}

TEST(Names, NamePartIsWhatFollowsTheLastSeparator) {
  expectRows(
      namePart,
      {{L"/etc", L"etc"}, {L"a\\b", L"b"}, {L"a/b/", L""}, {L"plain", L"plain"}, {L"", L""}});
}

TEST(Names, StripSlashTakesTheLastSlashByItsRules) {
  expectRows(stripSlash, {{L"/", L""},
                          {L"//", L"//"},
                          {L"///", L"///"},
                          {L"/a/", L"/a"},
                          {L"", L""},
                          {L"a/", L"a/"},
                          {L"ab/", L"ab"},
                          {L"/a", L"/a"}});
}

TEST(Names, WithoutSlashesKeepsTheRoot) {
  expectRows(
      withoutSlashes,
      {{L"", L""}, {L"/", L"/"}, {L"///", L"/"}, {L"/a/", L"/a"}, {L"a//", L"a"}, {L"/a", L"/a"}});
  EXPECT_TRUE(endsInSlash(L"/"));
  EXPECT_TRUE(endsInSlash(L"/a/"));
  EXPECT_FALSE(endsInSlash(L""));
  EXPECT_FALSE(endsInSlash(L"/a"));
}

TEST(Names, AddSlashLeavesAnEmptyPathEmpty) {
  expectRows(addSlash, {{L"", L""}, {L"/", L"/"}, {L"/a", L"/a/"}, {L"/a/", L"/a/"}});
}

TEST(Names, ParentAndLastComponentSplitAtSlashesOnly) {
  expectRows(parentOf, {{L"/a/b", L"/a"},
                        {L"/a", L"/"},
                        {L"/", L"/"},
                        {L"/a/b/", L"/a"},
                        {L"/a//b", L"/a"},
                        {L"//a", L"/"},
                        {L"a", L""},
                        {L"", L""},
                        {L"/a/x\\y", L"/a"},
                        {L"/a/12:30", L"/a"},
                        {L"/a/...", L"/a"}});
  expectRows(lastComponent, {{L"/a/b", L"b"},
                             {L"/a", L"a"},
                             {L"/", L""},
                             {L"/a/b//", L"b"},
                             {L"a", L"a"},
                             {L"", L""},
                             {L"/a/x\\y", L"x\\y"},
                             {L"/a/...", L"..."}});
}

TEST(Names, JoinPathPutsOneSlashBetween) {
  EXPECT_EQ(exact(joinPath(L"/a", L"b")), L"/a/b");
  EXPECT_EQ(exact(joinPath(L"/", L"b")), L"/b");
  EXPECT_EQ(exact(joinPath(L"/a/", Westring(L"b"))), L"/a/b");
  EXPECT_EQ(exact(joinPath(L"", L"b")), L"b");
  EXPECT_EQ(exact(joinPath(L"/a", L"...")), L"/a/...");
  EXPECT_EQ(exact(joinPath(L"/a", L"x\\y:z")), L"/a/x\\y:z");
  Westring deep(L'd', 4095);
  EXPECT_EQ(joinPath(deep, L"name").length(), 4100);
}

TEST(Names, TheSameNameIsTheExactName) {
  EXPECT_TRUE(sameName(L"foo", L"foo"));
  EXPECT_FALSE(sameName(Westring(L"foo"), Westring(L"Foo")));
  EXPECT_FALSE(sameName(Westring(L"foo"), L"foo "));
}

TEST(Names, DotAndDotDotAreThoseTwoOnly) {
  EXPECT_TRUE(isDotOrDotDot(L"."));
  EXPECT_TRUE(isDotOrDotDot(L".."));
  for (const wchar_t* name : {L"", L"...", L"..a", L".a", L"a."}) EXPECT_FALSE(isDotOrDotDot(name));
}

TEST(Names, AWildcardIsAStarOrAQuestionMark) {
  EXPECT_TRUE(hasWildcard(L"a*"));
  EXPECT_TRUE(hasWildcard(L"?"));
  EXPECT_FALSE(hasWildcard(L"[a]{b,c}"));
  EXPECT_FALSE(hasWildcard(L""));
}

TEST(RenameMask, FormsTheTargetName) {
  const wchar_t* rows[][3] = {{L"name.txt", L"*.bak", L"name.bak"},
                              {L"name.txt", L"*.*", L"name.txt"},
                              {L"name.txt", L"x*", L"xname"},
                              {L"name.txt", L"??", L"na"},
                              {L"a", L"???", L"a"},
                              {L"a.b.c", L"*.*", L"a.b"},
                              {L"a.b.c", L"*.*.*", L"a.b.c"},
                              {L"name", L"*.x", L"name.x"},
                              {L"name", L"*.", L"name."},
                              {L"name.txt", L".", L"."},
                              {L"name.txt", L"?x*", L"nxame"},
                              {L"name.txt", L"", L""},
                              {L"", L"a*?.b", L"a.b"},
                              {L"ab.txt", L"?????", L"ab.tx"},
                              {L"name.txt", L"plain", L"plain"},
                              {L"name.txt", L"?.?", L"n.t"},
                              {L"a.b", L"**", L"a"},
                              {L"\u00E4.\u00F6", L"*1.*2", L"\u00E41.\u00F62"}};
  for (const auto& [source, mask, expected] : rows) {
    EXPECT_EQ(exact(applyRenameMask(source, mask)), expected) << Westring(mask).data();
  }
}

TEST(RenameMask, TheResultHasRoomForSourceAndMaskTogether) {
  Westring source(L's', 5000);
  Westring mask(L'm', 5000);
  mask += L'*';
  EXPECT_EQ(applyRenameMask(source.data(), mask.data()).length(), 10000);
}

#include "ui/word_motion.h"

#include <gtest/gtest.h>

#include "foundation/utf8.h"
#include "options/options.h"

namespace {

struct Step {
  const wchar_t* text;
  int from;
  int to;
};

std::string where(const Step& step) {
  return std::string(toUtf8(step.text).data()) + " from " + std::to_string(step.from);
}

}  // namespace

TEST(WordMotion, LeftGoesToTheStartOfTheWordBefore) {
  const Step steps[] = {
      {L"one two", 7, 4},       // over "two"
      {L"one two", 4, 0},       // over the space, then "one"
      {L"one two", 5, 4},       // from within a word to its start
      {L"one  --  two", 9, 0},  // all of the separators at once
      {L"one", 0, 0},          {L"", 0, 0},           {L"/usr/local", 10, 5},
      {L"/usr/local", 5, 1},   {L"/usr/local", 1, 0}, {L"snake_case", 10, 0},
      {L"one", 99, 0},
  };
  for (const Step& step : steps) {
    EXPECT_EQ(wordLeft(step.text, step.from), step.to) << where(step);
  }
}

TEST(WordMotion, RightEndsAtTheStartOfTheNextWord) {
  const Step steps[] = {
      {L"one two", 0, 4},
      {L"one two", 2, 4},
      {L"one two", 3, 7},  // the first step takes the
                           // space
      {L"one two", 4, 7},
      {L"one two", 7, 7},
      {L"one  --  two", 0, 9},
      {L"/usr/local", 0, 5},
      {L"/usr/local", 5, 10},
      {L"", 0, 0},
      {L"a.b.c", 0, 2},
  };
  for (const Step& step : steps) {
    EXPECT_EQ(wordRight(step.text, step.from, WordRightStop::NextStart), step.to) << where(step);
  }
}

TEST(WordMotion, BriefRightEndsBehindTheNextWord) {
  const Step steps[] = {
      {L"one two", 0, 3},       {L"one two", 3, 7},    {L"one two", 1, 3}, {L"one two", 7, 7},
      {L"one  --  two", 3, 12}, {L"/usr/local", 0, 4}, {L"one --", 3, 6},  {L"", 0, 0},
  };
  for (const Step& step : steps) {
    EXPECT_EQ(wordRight(step.text, step.from, WordRightStop::WordEnd), step.to) << where(step);
  }
}

TEST(WordMotion, AnUndecodableByteIsNoPartOfAWord) {
  const wchar_t text[] = {L'a', static_cast<wchar_t>(-29), L'b', 0};
  EXPECT_EQ(wordLeft(text, 3), 2);
  EXPECT_FALSE(isWordCharacter(static_cast<wchar_t>(-1)));
  EXPECT_FALSE(isWordCharacter(static_cast<wchar_t>(-97)));
}

TEST(WordMotion, TheOptionChoosesTheStop) {
  GlobalOptions::BriefWordRight = true;
  EXPECT_EQ(configuredWordRightStop(), WordRightStop::WordEnd);
  GlobalOptions::BriefWordRight = false;
  EXPECT_EQ(configuredWordRightStop(), WordRightStop::NextStart);
  GlobalOptions::BriefWordRight = true;
}

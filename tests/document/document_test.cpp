#include "editor/document/document.h"

#include <gtest/gtest.h>

#include "document/document_support.h"

using namespace std::string_literals;

TEST(Document, AnEmptyFileIsOneEmptyLine) {
  Document document;
  ASSERT_TRUE(document.load("", Utf8));
  EXPECT_EQ(document.lineCount(), 1);
  EXPECT_EQ(document.text(0), L"");
  EXPECT_EQ(writtenBytes(document), "");
}

TEST(Document, ALineEndAtTheEndGivesALastEmptyLine) {
  Document document;
  ASSERT_TRUE(document.load("a\n", Utf8));
  EXPECT_EQ(document.lineCount(), 2);
  EXPECT_EQ(document.text(1), L"");
  EXPECT_EQ(writtenBytes(document), "a\n");
}

TEST(Document, ATextThatIsPutInAndTakenOutLeavesTheBytes) {
  const std::string bytes =
      "one\r\ntwo\rthr\xE9"
      "e\0four"s;
  Document document;
  ASSERT_TRUE(document.load(bytes, Utf8));
  EXPECT_EQ(document.invalidLines(), 1);
  const Document::Replaced put = document.replace({0, 1}, {2, 2}, spanOf(L"x\ny"));
  EXPECT_EQ(put.removed.text(), L"ne\ntwo\nth");
  EXPECT_EQ(put.end, (TextPlace{1, 1}));
  EXPECT_EQ(writtenBytes(document),
            "ox\nyr\xE9"
            "e\0four"s);
  document.replace({0, 1}, put.end, put.removed);
  EXPECT_EQ(writtenBytes(document), bytes);
}

#include "foundation/string_collections.h"

#include <gtest/gtest.h>

#include "support/exact_text.h"

namespace {
std::vector<std::string> fieldsOf(const char* list) {
  std::vector<std::string> fields;
  while (*list != 0) fields.push_back(exact(nextField(list)));
  return fields;
}

using Fields = std::vector<std::string>;
}  // namespace

TEST(NextField, QuotesAndDecimalsAreRead) {
  EXPECT_EQ(fieldsOf("a,\"b,c\",\\065"), (Fields{"a", "b,c", "A"}));
}

TEST(NextField, FieldsMayBeEmpty) {
  EXPECT_EQ(fieldsOf(",b"), (Fields{"", "b"}));
  EXPECT_EQ(fieldsOf("a,,b"), (Fields{"a", "", "b"}));
  EXPECT_EQ(fieldsOf("a,"), (Fields{"a"}));
  EXPECT_EQ(fieldsOf(""), Fields{});
  EXPECT_EQ(fieldsOf("\"\",b"), (Fields{"", "b"}));
}

TEST(NextField, ADoubledQuoteIsOneQuote) {
  EXPECT_EQ(fieldsOf("\"a\"\"b\",c"), (Fields{"a\"b", "c"}));
  EXPECT_EQ(fieldsOf("a\"\"b"), (Fields{"ab"}));
  EXPECT_EQ(fieldsOf("\"\"\"\",c"), (Fields{"\"", "c"}));
  EXPECT_EQ(fieldsOf("a,\"b\""), (Fields{"a", "b"}));
}

TEST(NextField, ABackslashTakesTheNextCharacterOrUpToThreeDigits) {
  EXPECT_EQ(fieldsOf("\\,x"), (Fields{",x"}));
  EXPECT_EQ(fieldsOf("\\\\"), (Fields{"\\"}));
  EXPECT_EQ(fieldsOf("\\\"a,b"), (Fields{"\"a", "b"}));
  EXPECT_EQ(fieldsOf("\\0651"), (Fields{"A1"}));
  EXPECT_EQ(fieldsOf("\\65x"), (Fields{"Ax"}));
  EXPECT_EQ(fieldsOf("\"\\065,\""), (Fields{"A,"}));
  EXPECT_EQ(fieldsOf("\\321"), (Fields{"A"}));
  EXPECT_EQ(fieldsOf("a\\000b"), (Fields{"ab"}));
  EXPECT_EQ(fieldsOf("a\\"), (Fields{"a"}));
}

TEST(NextField, NewlinesAreDropped) {
  EXPECT_EQ(fieldsOf("a\nb,\nc\n"), (Fields{"ab", "c"}));
  EXPECT_EQ(fieldsOf("a\\010b"), (Fields{"a\nb"}));
}

TEST(NextField, AnOpenQuoteEndsWithTheList) {
  EXPECT_EQ(fieldsOf("\"a,b"), (Fields{"a,b"}));
}

TEST(NextField, TheStringFormKeepsTheRemainder) {
  Estring list("a,\"b,c\",\\065");
  EXPECT_EQ(exact(nextField(list)), "a");
  EXPECT_EQ(exact(list), "\"b,c\",\\065");
  EXPECT_EQ(exact(nextField(list)), "b,c");
  EXPECT_EQ(exact(nextField(list)), "A");
  EXPECT_EQ(exact(list), "");
  EXPECT_EQ(exact(nextField(list)), "");
}

TEST(NextField, ALongListIsReadInLinearTime) {
  std::string list;
  for (int i = 0; i < 200000; ++i) list += "field,";
  EXPECT_EQ(fieldsOf(list.c_str()).size(), 200000U);
}

TEST(StringCollection, ADuplicateKeepsTheFirstSpelling) {
  StringCollection collection;
  EXPECT_EQ(collection.addCopy("Foo"), 1);
  EXPECT_EQ(collection.addCopy("foo"), 0);
  EXPECT_EQ(collection.count(), 1);
  EXPECT_EQ(exact(*collection.first()), "Foo");
}

TEST(StringCollection, AListAddsItsFieldsInOrder) {
  StringCollection collection;
  EXPECT_EQ(collection.addList("b,\"a,1\",B,c,"), 3);
  EXPECT_EQ(exact(collection.join()), "a,1,b,c");
  EXPECT_EQ(collection.addList(""), 0);
}

TEST(StringCollection, JoinsNothingAtTheEnds) {
  StringCollection collection;
  EXPECT_EQ(exact(collection.join()), "");
  collection.addCopy("a");
  EXPECT_EQ(exact(collection.join()), "a");
}

TEST(FnStringCollection, IgnoresCase) {
  FnStringCollection collection;
  EXPECT_EQ(collection.addCopy(L"\u00C4"), 1);
  EXPECT_EQ(collection.addCopy(L"\u00E4"), 0);
  EXPECT_EQ(exact(*collection.first()), L"\u00C4");
}

TEST(NameCollection, KeepsNamesThatDifferInCaseOnly) {
  NameCollection collection;
  EXPECT_EQ(collection.addCopy(L"foo"), 1);
  EXPECT_EQ(collection.addCopy(L"Foo"), 1);
  EXPECT_EQ(collection.addCopy(L"foo"), 0);
  EXPECT_EQ(collection.count(), 2);
  Westring key(L"FOO");
  EXPECT_EQ(collection.find(&key), nullptr);
  key = L"foo";
  EXPECT_EQ(exact(*collection.find(&key)), L"foo");
}

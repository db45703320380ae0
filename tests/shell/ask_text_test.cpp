#include "shell/ask_text.h"

#include "console/key_codes.h"
#include "foundation/utf8.h"
#include "support/console_test.h"

namespace {

class AskText : public ConsoleTest {};

TEST_F(AskText, EnterGivesTheTextAndRestoresTheScreen) {
  queueText("some words");
  queueKey(Key::Enter);
  const std::string before = screenText();
  std::optional<Westring> answer = askText(L"File to compare with");
  ASSERT_TRUE(answer.has_value());
  EXPECT_STREQ(toUtf8(*answer).data(), "some words");
  EXPECT_EQ(screenText(), before);
}

TEST_F(AskText, EscapeGivesNothing) {
  queueText("some words");
  queueKey(Key::Esc);
  EXPECT_FALSE(askText(L"?").has_value());
}

TEST_F(AskText, CursorAndAttributeAreAsBefore) {
  setTextAttr(0x2F);
  setTextPos(7, 3);
  queueKey(Key::Enter);
  EXPECT_TRUE(askText(L"?").has_value());
  EXPECT_EQ(textState.textAttr, 0x2F);
  EXPECT_EQ(textState.textX, 7);
  EXPECT_EQ(textState.textY, 3);
}

}  // namespace

#include "fileops/error_dialog.h"

#include <cerrno>

#include "fileops/fileops_test.h"
#include "foundation/status.h"

namespace {

struct ErrorButtons {
  int code;
  const char* text;
  bool second;
  AlertButtons buttons;
};

constexpr ErrorButtons Rows[] = {
    {ENOENT, "File not found", false, AlertButtons::OkCancel},
    {EIO, "Error reading disk", false, AlertButtons::RetrySkip},
    {EACCES, "Access Denied", false, AlertButtons::RetrySkip},
    {ENOTDIR, "Path not found", true, AlertButtons::OkCancel},
    {ENOSPC, "No room for", false, AlertButtons::RetrySkip},
    {EROFS, "Disk write protected, cannot write", false, AlertButtons::RetrySkip},
    {ENAMETOOLONG, "Name too long", true, AlertButtons::OkCancel},
    {Status::NotReady, "Drive not ready", false, AlertButtons::RetrySkip},
    {EEXIST, "File exists (17)", false, AlertButtons::RetrySkip},
    {ENOTEMPTY, "Directory not empty (39)", false, AlertButtons::RetrySkip},
    {EISDIR, "Is a directory (21)", false, AlertButtons::RetrySkip},
    {EINVAL, "Invalid argument (22)", false, AlertButtons::RetrySkip},
};

}  // namespace

TEST(ErrorDialog, EachCodeHasItsTextItsPathAndItsButtons) {
  for (const ErrorButtons& row : Rows) {
    const ErrorBox box = errorBox(row.code, L"/first", L"/second");
    EXPECT_STREQ(toUtf8(box.text).data(), row.text) << row.code;
    EXPECT_STREQ(toUtf8(box.path).data(), row.second ? "/second" : "/first") << row.code;
    EXPECT_EQ(box.buttons, row.buttons) << row.code;
  }
}

TEST(ErrorDialog, WithoutASecondPathTheFirstOneIsShown) {
  for (const ErrorButtons& row : Rows) {
    EXPECT_STREQ(toUtf8(errorBox(row.code, L"/first").path).data(), "/first") << row.code;
  }
}

TEST(ErrorDialog, EachButtonGivesItsAnswerAndTheBoxIsRed) {
  for (const ErrorButtons& row : Rows) {
    const bool canRetry = row.buttons == AlertButtons::RetrySkip;
    ScriptedUi ui;
    ui.answers = {canRetry ? Answer::Retry : Answer::Yes, Answer::Cancel};
    if (canRetry) ui.answers.push_back(Answer::Skip);
    EXPECT_EQ(showError(ui, row.code, L"/first"),
              canRetry ? ErrorAnswer::Retry : ErrorAnswer::Skip);
    EXPECT_EQ(showError(ui, row.code, L"/first"), ErrorAnswer::Cancel);
    if (canRetry) {
      EXPECT_EQ(showError(ui, row.code, L"/first"), ErrorAnswer::Skip);
    }
    EXPECT_EQ(ui.questions.front().colour, AlertColour::Error);
  }
}

#include "fileops/error_dialog.h"

#include <cerrno>

#include "foundation/path_info.h"
#include "foundation/status.h"

namespace {

enum class Shows { First, Second };

struct ErrorRow {
  int code;
  const char* text;
  Shows shows;
  AlertButtons buttons;
};

constexpr ErrorRow ErrorRows[] = {
    {ENOENT, "File not found", Shows::First, AlertButtons::OkCancel},
    {EIO, "Error reading disk", Shows::First, AlertButtons::RetrySkip},
    {EACCES, "Access Denied", Shows::First, AlertButtons::RetrySkip},
    {ENOTDIR, "Path not found", Shows::Second, AlertButtons::OkCancel},
    {ENOSPC, "No room for", Shows::First, AlertButtons::RetrySkip},
    {EROFS, "Disk write protected, cannot write", Shows::First, AlertButtons::RetrySkip},
    {ENAMETOOLONG, "Name too long", Shows::Second, AlertButtons::OkCancel},
    {Status::NotReady, "Drive not ready", Shows::First, AlertButtons::RetrySkip},
};

}  // namespace

ErrorBox errorBox(int code, const Westring& first, const Westring& second) {
  for (const ErrorRow& row : ErrorRows) {
    if (row.code != code) continue;
    const bool useSecond = row.shows == Shows::Second && !second.empty();
    return {Westring(row.text), useSecond ? second : first, row.buttons};
  }
  return {errorText(code), first, AlertButtons::RetrySkip};
}

ErrorAnswer showError(OperationUi& ui, int code, const Westring& first, const Westring& second) {
  const ErrorBox box = errorBox(code, first, second);
  switch (ui.ask(box.text, box.path, box.buttons, AlertColour::Error)) {
    case Answer::Cancel:
      return ErrorAnswer::Cancel;
    case Answer::Retry:
      return ErrorAnswer::Retry;
    default:
      return ErrorAnswer::Skip;
  }
}

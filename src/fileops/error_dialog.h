#pragma once

#include "fileops/operation.h"

enum class ErrorAnswer { Retry, Skip, Cancel };

// One row of the table of errors, filled in.
struct ErrorBox {
  Westring text;
  Westring path;
  AlertButtons buttons = AlertButtons::RetrySkip;
};

// `code` is an errno value or one of the program's own; `second` is empty when there is only one
// path.
ErrorBox errorBox(int code, const Westring& first, const Westring& second = Westring());

// Shows the box. The OK of a box without Retry counts as Skip.
ErrorAnswer showError(OperationUi& ui, int code, const Westring& first,
                      const Westring& second = Westring());

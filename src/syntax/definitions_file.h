#pragma once

#include <memory>
#include <string_view>

#include "foundation/westring.h"

class SyntaxDefinitions;

struct SyntaxLoad {
  std::shared_ptr<const SyntaxDefinitions> definitions;  // null when nothing fits the text
  int status = 0;  // errno of a file of definitions that is there but can't be read; EFBIG above
                   // the limit
  Westring file;   // the file that status speaks of
};

// The definitions for a text of that name (a path or a name). The user's own file comes before the
// shared one, and only the first that is there counts. When no section fits the name and the first
// line names an interpreter, "." and the interpreter's name are tried in its place.
SyntaxLoad loadSyntax(const Westring& textPath, std::wstring_view firstLine);

// The name of the program that a first line such as "#!/usr/bin/env python3" runs, without digits,
// dots and '-' at its end; "" when it names none.
Westring interpreterOf(std::wstring_view firstLine);

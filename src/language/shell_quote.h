#pragma once

#include "foundation/westring.h"

// A file name as one word of a shell command: special characters get a backslash, a newline stands
// between single quotes.
Westring quoteForShell(const Westring& text);
// The same for a name that is put into a command as an argument: one that begins with '-' gets
// "./".
Westring quoteNameForShell(const Westring& name);
// The same inside double quotes that the caller writes; a newline is plain text there.
Westring escapeInDoubleQuotes(const Westring& text);
// Each CmdChar becomes two of them, for names placed into a template.
Westring doubleLeadChar(const Westring& text);
// What a shell makes of one word: quotes and backslashes removed.
Westring unquoteShellWord(const Westring& text);

// CmdChar as a wide character; an emptied option stands for its default.
inline constexpr wchar_t DefaultMacroLead = L'!';
wchar_t macroLeadCharacter();

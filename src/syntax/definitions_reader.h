#pragma once

#include <memory>
#include <string_view>

#include "foundation/westring.h"
#include "syntax/syntax_definitions.h"

// What a file of definitions says about texts of a name: the rules of every section whose pattern
// fits it. Null when none does. Whatever is no rule is left out in silence; any bytes are taken.
// Classes and colours stand on `defaultColour`.
std::shared_ptr<const SyntaxDefinitions> readSyntax(std::string_view content,
                                                    const Westring& baseName,
                                                    unsigned char defaultColour);

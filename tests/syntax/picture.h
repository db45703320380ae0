#pragma once

#include <memory>
#include <string>

#include "syntax/syntax_definitions.h"

// The rules of `content` for a text of that name, by its first line where no section fits the name.
// Null when there are none.
std::shared_ptr<const SyntaxDefinitions> definitionsFor(const std::string& content,
                                                        const std::string& name,
                                                        const std::string& text,
                                                        unsigned char defaultColour);

// A text as it is coloured: two rows for each line, its cells and below them one letter for the
// class of each: Comment c, String s, Character q, Number n, Keyword k, Type t, Constant o,
// Function f, Preproc p, Operator =, Tag <, Attribute a, Heading h, Added +, Removed -, Error !,
// anything else ?, and a blank for text that no rule touches. Blanks at the end of a row are cut.
// "" when no section fits.
std::string syntaxPicture(const std::string& content, const std::string& name,
                          const std::string& text);

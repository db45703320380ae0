#pragma once

#include <string>
#include <vector>

#include "foundation/entry.h"
#include "foundation/westring.h"
#include "language/filter_expression.h"

// A filter expression made ready for many names as the disk has them. Plain masks are compared on
// the bytes; everything else goes through the language of filters. Any thread.
class NameFilter {
 public:
  explicit NameFilter(const Westring& expression);

  NameVerdict verdict(const char* name) const;
  // The rest, for an entry whose name is the bare one, when the name alone didn't decide.
  bool matches(const entry* item) const;

 private:
  bool compile();
  bool addMask(std::wstring_view mask);

  const Westring expression_;
  std::vector<std::string> masks_;  // lower case, ASCII; one of them must fit
  bool plain_;                      // they are all of the expression
};

#include "editor/text/code_page_list.h"

#include <charconv>

#include "editor/text/text_encoding.h"
#include "foundation/string_collections.h"
#include "options/options.h"

namespace {

// The page of this number; below 0 for what is none.
int pageOf(const Estring& number) {
  const std::string_view text = number.data();
  int page = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), page);
  return error == std::errc() && end == text.data() + text.size() ? page : -1;
}

}  // namespace

CodePageList::Step CodePageList::next() {
  const char* cursor = GlobalOptions::TranslateCP.data();
  for (int i = 0; i < taken_; ++i) nextField(cursor);
  const Estring field = trim(nextField(cursor));
  if (field.empty()) {
    restart();
    return {};
  }
  ++taken_;
  const int page = pageOf(field);
  if (page < 0 || !codePageExists(page)) return {0, Number::Unknown};
  return {page == resolvedPage(0) ? 0 : page};
}

CodePageList& codePageList() {
  static CodePageList list;
  return list;
}

#include "viewer/view_status.h"

#include "foundation/text_format.h"

namespace {

constexpr wchar_t Head[] = L"View: ";
constexpr int NameMargin = 22;    // by which the name is shorter than the row
constexpr int FormatMargin = 15;  // where the format begins, from the right
constexpr int PercentMargin = 7;  // where the percentage begins

void padTo(Westring& text, int length) {
  while (text.length() < length) text += L' ';
}

}  // namespace

Westring viewStatus(const Westring& name, const Westring& format, const Westring& percent,
                    int width) {
  Westring text = Westring(Head) + shortenPath(name, width - NameMargin);
  padTo(text, width - FormatMargin);
  text += format;
  padTo(text, width - PercentMargin);
  return text + percent;
}

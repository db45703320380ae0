#include "foundation/locale_settings.h"

#include <langinfo.h>
#include <strings.h>

#include <cwchar>
#include <cwctype>
#include <string>

#include "foundation/code_page.h"
#include "foundation/fold.h"
#include "foundation/utf8.h"

LocaleSettings localeSettings;

namespace {
constexpr wchar_t ThousandFallback = L',';
constexpr wchar_t DateFallback = L'-';

// Text in the locale's encoding as wide text; UTF-8 where it isn't valid there.
Westring localeText(const char* bytes) {
  mbstate_t state{};
  const char* rest = bytes;
  size_t length = mbsrtowcs(nullptr, &rest, 0, &state);
  if (length == static_cast<size_t>(-1)) return fromUtf8(bytes);
  Westring result = Westring::withRoom(static_cast<int>(length));
  state = mbstate_t{};
  rest = bytes;
  mbsrtowcs(result.data(), &rest, length + 1, &state);
  return result;
}

bool isDateFlag(wchar_t character) {
  return character != 0 && wcschr(L"_-0^#+", character) != nullptr;
}

DateOrder orderOf(const wchar_t* letters) {
  if (sameWord(letters, L"mdy")) return DateOrder::MonthDayYear;
  if (sameWord(letters, L"dmy")) return DateOrder::DayMonthYear;
  return DateOrder::YearMonthDay;
}
}  // namespace

wchar_t thousandSeparatorOf(const char* thousep) {
  Westring text = localeText(thousep);
  return text.empty() ? ThousandFallback : text[0];
}

void parseDateFormat(const char* dateFormat, LocaleSettings& settings) {
  std::wstring letters;
  wchar_t separator = 0;
  Westring format = localeText(dateFormat);
  for (const wchar_t* p = format.data(); *p != 0; ++p) {
    if (*p == L'%') {
      while (isDateFlag(p[1])) ++p;
    } else if (iswalpha(static_cast<wint_t>(*p))) {
      letters += *p;
    } else if (separator == 0 && !iswdigit(static_cast<wint_t>(*p))) {
      separator = *p;
    }
  }
  settings.dateSeparator = separator != 0 ? separator : DateFallback;
  Westring between(settings.dateSeparator, 1);
  settings.dateFormat = Westring(L"%02d") + between + L"%02d" + between + L"%02d";
  settings.dateOrder = orderOf(letters.c_str());
}

void readLocaleSettings(int codePage) {
  localeSettings.thousandSeparator = thousandSeparatorOf(nl_langinfo(THOUSEP));
  parseDateFormat(nl_langinfo(D_FMT), localeSettings);
  setDefaultCodePage(codePage);
}

#include "support/turkish_locale.h"

#include <clocale>
#include <cstdlib>
#include <cwctype>

namespace {
constexpr char Name[] = "tr_TR.UTF-8";
}

TurkishLocale::TurkishLocale() : before_(setlocale(LC_ALL, nullptr)) {
  if (setlocale(LC_ALL, Name) != nullptr) return;
  const std::string command =
      "localedef -i tr_TR -f UTF-8 --no-archive '" + compiled_.path(Name) + "'";
  if (system(command.c_str()) != 0) return;
  setenv("LOCPATH", compiled_.path().c_str(), 1);
  setlocale(LC_ALL, Name);
}

TurkishLocale::~TurkishLocale() {
  unsetenv("LOCPATH");
  setlocale(LC_ALL, before_.c_str());
}

bool TurkishLocale::holds() const {
  constexpr wint_t dotless = 0x131;
  return towlower(L'I') == dotless;
}

#pragma once

#include <string>

#include "support/temp_dir.h"

// The locale tr_TR.UTF-8, in which 'i' and 'I' are no pair, until the end of the object. Where the
// machine lacks it, it is compiled into a directory of its own. A test must check that it holds.
class TurkishLocale {
 public:
  TurkishLocale();
  ~TurkishLocale();
  TurkishLocale(const TurkishLocale&) = delete;
  TurkishLocale& operator=(const TurkishLocale&) = delete;

  // Whether the letters really fold as in Turkish.
  bool holds() const;

 private:
  TempDir compiled_;
  std::string before_;
};

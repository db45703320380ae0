#pragma once

#include <cstdlib>
#include <string>

#include "foundation/dos_time.h"

// Another time zone for a scope.
class Zone {
 public:
  explicit Zone(const char* name) {
    const char* present = getenv("TZ");
    before_ = present ? present : "";
    had_ = present != nullptr;
    setenv("TZ", name, 1);
    timeZoneChanged();
  }
  ~Zone() {
    if (had_) {
      setenv("TZ", before_.c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    timeZoneChanged();
  }
  Zone(const Zone&) = delete;
  Zone& operator=(const Zone&) = delete;

 private:
  std::string before_;
  bool had_;
};

#pragma once

#include <cerrno>
#include <cstring>

#include "foundation/system.h"

// As long as it lives, every rename of an item fails as if the target were on another device;
// renames of files in the making, which stay in their directory, work. Another hook may look on.
class OtherDevice {
 public:
  explicit OtherDevice(System::Hook next = nullptr, void* context = nullptr)
      : next_(next), context_(context) {
    System::setHook(onCall, this);
  }
  ~OtherDevice() { System::setHook(nullptr, nullptr); }
  OtherDevice(const OtherDevice&) = delete;
  OtherDevice& operator=(const OtherDevice&) = delete;

 private:
  static int onCall(const char* call, const char* path, void* context) {
    auto* self = static_cast<OtherDevice*>(context);
    const bool rename = strcmp(call, "renameNoReplace") == 0 || strcmp(call, "renameAt") == 0;
    const char* name = strrchr(path, '/');
    name = name ? name + 1 : path;
    const bool inTheMaking = strncmp(name, ".td-", 4) == 0;
    if (rename && !inTheMaking) return EXDEV;
    return self->next_ ? self->next_(call, path, self->context_) : 0;
  }

  System::Hook next_;
  void* context_;
};

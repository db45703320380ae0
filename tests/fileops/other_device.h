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
    System::setPlaceHook(onCall, this);
  }
  OtherDevice(System::PlaceHook next, void* context) : nextPlace_(next), context_(context) {
    System::setPlaceHook(onCall, this);
  }
  ~OtherDevice() { System::setHook(nullptr, nullptr); }
  OtherDevice(const OtherDevice&) = delete;
  OtherDevice& operator=(const OtherDevice&) = delete;

 private:
  static int onCall(const System::Call& call, void* context) {
    auto* self = static_cast<OtherDevice*>(context);
    const bool rename =
        strcmp(call.name, "renameNoReplace") == 0 || strcmp(call.name, "renameAt") == 0;
    const char* name = strrchr(call.path, '/');
    name = name ? name + 1 : call.path;
    const bool inTheMaking = strncmp(name, ".td-", 4) == 0;
    if (rename && !inTheMaking) return EXDEV;
    if (self->nextPlace_) return self->nextPlace_(call, self->context_);
    return self->next_ ? self->next_(call.name, call.path, self->context_) : 0;
  }

  System::Hook next_ = nullptr;
  System::PlaceHook nextPlace_ = nullptr;
  void* context_;
};

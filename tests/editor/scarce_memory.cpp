#include "editor/scarce_memory.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<size_t> refusedFrom{0};
std::atomic<size_t> refusedBelow{0};
std::atomic<bool> refused{false};
}  // namespace

ScarceMemory::ScarceMemory(size_t from, size_t below) {
  refused = false;
  refusedFrom = from;
  refusedBelow = below;
}

ScarceMemory::~ScarceMemory() {
  refusedBelow = 0;
}

bool ScarceMemory::hasRefused() {
  return refused;
}

void* operator new(size_t size, const std::nothrow_t& /*tag*/) noexcept {
  if (size < refusedBelow && size >= refusedFrom) {
    refused = true;
    return nullptr;
  }
  return std::malloc(size > 0 ? size : 1);
}

void* operator new(size_t size) {
  if (void* block = operator new(size, std::nothrow)) return block;
  throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
  std::free(block);
}

void operator delete(void* block, size_t) noexcept {
  std::free(block);
}

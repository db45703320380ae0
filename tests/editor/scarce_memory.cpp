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

void* operator new(size_t size) {
  if (size < refusedBelow && size >= refusedFrom) {
    refused = true;
    throw std::bad_alloc();
  }
  if (void* block = std::malloc(size > 0 ? size : 1)) return block;
  throw std::bad_alloc();
}

void* operator new(size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return size < refusedBelow && size >= refusedFrom ? nullptr : std::malloc(size > 0 ? size : 1);
}

void operator delete(void* block) noexcept {
  std::free(block);
}

void operator delete(void* block, size_t) noexcept {
  std::free(block);
}

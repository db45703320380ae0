#pragma once

#include <cstddef>

#include "foundation/object_store.h"

struct MemoryPoolBlock {
  explicit MemoryPoolBlock(size_t bytes);
  ~MemoryPoolBlock();
  MemoryPoolBlock(const MemoryPoolBlock&) = delete;
  MemoryPoolBlock& operator=(const MemoryPoolBlock&) = delete;

  char* base;  // null when the system gave no memory
  char* next;
  size_t size;
};

// A bump allocator in 65536-byte blocks: many small records that all end together. Addresses follow
// each other without a gap, so a caller that needs alignment asks for multiples of it.
class MemoryPool : public TObjectStore<MemoryPoolBlock> {
 public:
  static constexpr size_t BlockSize = 65536;

  MemoryPool();
  void* allocate(size_t bytes);  // null when there is no memory
  void reset();                  // everything allocated so far ends

 private:
  void* take(size_t bytes);  // from the present block, null when it has no room
  void addBlock(size_t bytes);

  MemoryPoolBlock* block_ = nullptr;
};

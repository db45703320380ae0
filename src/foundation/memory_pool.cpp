#include "foundation/memory_pool.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

MemoryPoolBlock::MemoryPoolBlock(size_t bytes)
    : base(static_cast<char*>(malloc(bytes))), next(base), size(bytes) {}

MemoryPoolBlock::~MemoryPoolBlock() {
  free(base);
}

MemoryPool::MemoryPool() {
  addBlock(BlockSize);
}

void* MemoryPool::allocate(size_t bytes) {
  void* memory = take(bytes);
  if (memory != nullptr) return memory;
  addBlock(std::max(bytes, BlockSize));
  return take(bytes);
}

void MemoryPool::reset() {
  block_ = nullptr;
  clear();
  addBlock(BlockSize);
}

void* MemoryPool::take(size_t bytes) {
  if (block_ == nullptr || block_->base == nullptr) return nullptr;
  if (bytes > block_->size - static_cast<size_t>(block_->next - block_->base)) return nullptr;
  char* memory = block_->next;
  block_->next += bytes;
  return memory;
}

void MemoryPool::addBlock(size_t bytes) {
  auto block = std::make_unique<MemoryPoolBlock>(bytes);
  add(block.get());
  block_ = block.release();
}

#include "foundation/memory_pool.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

// The sanitizers' allocators end the program at a size that malloc would refuse.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() {
  return "allocator_may_return_null=1";
}

TEST(MemoryPool, StartsWithOneBlock) {
  MemoryPool pool;
  EXPECT_EQ(pool.count(), 1);
  EXPECT_EQ(pool.peek(0)->size, 65536U);
}

TEST(MemoryPool, AllocationsFollowEachOther) {
  MemoryPool pool;
  char* first = static_cast<char*>(pool.allocate(10));
  char* second = static_cast<char*>(pool.allocate(1));
  EXPECT_EQ(second, first + 10);
  EXPECT_EQ(pool.allocate(65536 - 11), second + 1);
  EXPECT_EQ(pool.count(), 1);
  EXPECT_NE(pool.allocate(1), nullptr);
  EXPECT_EQ(pool.count(), 2);
}

TEST(MemoryPool, ALargeAllocationHasABlockOfItsOwnSize) {
  MemoryPool pool;
  void* large = pool.allocate(70000);
  ASSERT_NE(large, nullptr);
  memset(large, 1, 70000);
  EXPECT_EQ(pool.count(), 2);
  EXPECT_EQ(pool.peek(1)->size, 70000U);
  EXPECT_NE(pool.allocate(1), nullptr);
  EXPECT_EQ(pool.count(), 3);
  EXPECT_EQ(pool.peek(2)->size, 65536U);
}

TEST(MemoryPool, ResetStartsAnew) {
  MemoryPool pool;
  pool.allocate(70000);
  pool.reset();
  EXPECT_EQ(pool.count(), 1);
  EXPECT_EQ(pool.peek(0)->next, pool.peek(0)->base);
  EXPECT_NE(pool.allocate(65536), nullptr);
  EXPECT_EQ(pool.count(), 1);
}

TEST(MemoryPool, AnswersNullWhenThereIsNoMemory) {
  MemoryPool pool;
  EXPECT_EQ(pool.allocate(SIZE_MAX), nullptr);
  EXPECT_EQ(pool.allocate(SIZE_MAX / 2), nullptr);
  char* after = static_cast<char*>(pool.allocate(8));
  ASSERT_NE(after, nullptr);
  memset(after, 1, 8);
}

// SPDX-License-Identifier: Apache-2.0
#include "rz/ptr_handle.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

class Part : public virtual rzRepBase {
 public:
  explicit Part(int* theNumAlive) : numAlive(theNumAlive) { ++*numAlive; }
  Part(const Part& other) : rzRepBase(other), numAlive(other.numAlive) { ++*numAlive; }
  Part& operator=(const Part&) = default;
  ~Part() override { --*numAlive; }
  int answer() const { return 42; }
  int* numAlive;
};

class Other : public virtual rzRepBase {
 public:
  int filler = 0;
};

class Both : public Other, public Part {
 public:
  using Part::Part;
};

}  // namespace

TEST(PtrHandle, LastReleaseDeletes) {
  int numAlive = 0;
  {
    rzPtrHandle<Part> first(new Part(&numAlive));
    rzPtrHandle_const<Part> second = first;
    first = nullptr;
    EXPECT_EQ(numAlive, 1);
    EXPECT_EQ(second->answer(), 42);
    rzPtrHandle_const<Part> third = std::move(second);
    EXPECT_TRUE(second.isNull());  // NOLINT: a moved handle is null
    EXPECT_EQ(third->refCount(), 1);
  }
  EXPECT_EQ(numAlive, 0);
}

TEST(PtrHandle, NullDereferenceThrowsBadPointer) {
  const rzPtrHandle<Part> null;
  const rzPtrHandle_const<Part> nullConst;
  EXPECT_THROW((void)null->answer(), rzBadPointer);
  EXPECT_THROW((void)*nullConst, rzBadPointer);
  EXPECT_TRUE(null == nullConst);
  EXPECT_FALSE(null.isBound());
}

TEST(PtrHandle, CopyOfAnObjectStartsWithoutHandlesAndAssignmentKeepsTheCounts) {
  int numAlive = 0;
  const rzPtrHandle<Part> original(new Part(&numAlive));
  const rzPtrHandle<Part> second = original;
  const rzPtrHandle<Part> copy(new Part(*original));
  EXPECT_EQ(copy->refCount(), 1);
  *copy = *original;
  EXPECT_EQ(copy->refCount(), 1);
  EXPECT_EQ(original->refCount(), 2);
}

TEST(PtrHandle, ConvertsToBasesAcrossAVirtualBase) {
  int numAlive = 0;
  rzPtrHandle<Both> both(new Both(&numAlive));
  rzPtrHandle<Part> part = both;
  rzPtrHandle_const<Other> other = both;
  EXPECT_TRUE(part == both);
  EXPECT_EQ(both->refCount(), 3);
  both = nullptr;
  part = nullptr;
  EXPECT_EQ(other->filler, 0);
  other = nullptr;
  EXPECT_EQ(numAlive, 0);
  static_assert(!std::is_convertible_v<rzPtrHandle_const<Part>, rzPtrHandle<Part>>);
  static_assert(!std::is_convertible_v<rzPtrHandle<Part>, rzPtrHandle<Both>>);
}

TEST(PtrHandle, AssignmentToItselfAndToItsOwnPartKeepsTheObject) {
  int numAlive = 0;
  rzPtrHandle<Part> handle(new Part(&numAlive));
  rzPtrHandle<Part>& same = handle;
  handle = same;
  EXPECT_EQ(numAlive, 1);
  EXPECT_EQ(handle->refCount(), 1);
}

TEST(PtrHandle, ThreadsMayShareAnObject) {
  int numAlive = 0;
  rzPtrHandle_const<Part> shared(new Part(&numAlive));
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([mine = shared] {
      for (int k = 0; k < 10000; ++k) const rzPtrHandle_const<Part> copy = mine;
    });
  for (std::thread& thread : threads) thread.join();
  threads.clear();
  EXPECT_EQ(shared->refCount(), 1);
  shared = nullptr;
  EXPECT_EQ(numAlive, 0);
}

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

}  // namespace

TEST(PtrHandle, LastReleaseDeletesAndNullIsNotFollowed) {
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
    const rzPtrHandle_const<Part>& same = third;
    third = same;
    EXPECT_EQ(numAlive, 1);
    EXPECT_THROW((void)first->answer(), rzBadPointer);
    EXPECT_THROW((void)*second, rzBadPointer);  // NOLINT
  }
  EXPECT_EQ(numAlive, 0);
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

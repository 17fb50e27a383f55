// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/priority_queue.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <string>

namespace {

std::string drained(rz_PriorityQueue<char>& queue) {
  std::string order;
  for (; !queue.empty(); queue.pop()) order += queue.top();
  return order;
}

// Worked out by hand: a pop moves the last element to the top, and it stays above its equals.
TEST(PriorityQueue, EqualPrioritiesKeepTheOrderOfTheHeap) {
  rz_PriorityQueue<char> queue(true);
  for (const char c : std::string("abcde")) queue.push(c, 1.0);
  EXPECT_EQ(drained(queue), "aedcb");

  // Popping a lifts e, which sinks below b, the left one of the equals; popping b lifts d, which
  // sinks below c and comes back to the top when c goes, e being no cheaper.
  queue.push('a', 1.0);
  for (const char c : std::string("bcde")) queue.push(c, c == 'b' || c == 'c' ? 2.0 : 3.0);
  EXPECT_EQ(drained(queue), "abcde");
}

TEST(PriorityQueue, HandlesNameWaitingItemsOnly) {
  rz_PriorityQueue<char> queue(true);
  EXPECT_THROW(queue.top(), rz_PriorityQueueDefs::EmptyQueue);
  EXPECT_THROW(queue.pop(), rz_PriorityQueueDefs::EmptyQueue);
  const rzLong a = queue.push('a', 1);
  const rzLong b = queue.push('b', 2);
  queue.remove(a);
  EXPECT_THROW(queue.remove(a), rz_PriorityQueueDefs::BadHandle);
  EXPECT_THROW(queue.remove(-1), rz_PriorityQueueDefs::BadHandle);
  EXPECT_THROW(queue.remove(2), rz_PriorityQueueDefs::BadHandle);
  EXPECT_EQ(queue.push('c', 3), a) << "free slots are used again";
  queue.remove(b);
  EXPECT_EQ(drained(queue), "c");
}

TEST(PriorityQueue, AgreesWithASortedMapUnderRandomUse) {
  std::mt19937 random(1);
  rz_PriorityQueue<int> queue(true);
  std::map<double, rzLong> waiting;
  for (int step = 0; step < 20000; ++step) {
    if (random() % 5 < 3 || waiting.empty()) {
      const double priority = static_cast<double>(random()) + step * 1e-6;
      waiting[priority] = queue.push(step, priority);
    } else if (random() % 2 == 0) {
      queue.pop();
      waiting.erase(waiting.begin());
    } else {
      const auto victim =
          std::next(waiting.begin(), static_cast<std::ptrdiff_t>(random() % waiting.size()));
      queue.remove(victim->second);
      waiting.erase(victim);
    }
    ASSERT_EQ(queue.size(), rf_Count(waiting.size()));
  }
  for (double last = 0; !waiting.empty(); waiting.erase(waiting.begin())) {
    EXPECT_GE(waiting.begin()->first, last);
    last = waiting.begin()->first;
    EXPECT_NO_THROW(queue.remove(waiting.begin()->second));
  }
  EXPECT_TRUE(queue.empty());
}

}  // namespace

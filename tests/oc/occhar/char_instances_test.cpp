// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "oc/char.h"

namespace {

using Keys = std::vector<rzOCCharKey>;
using testing::ElementsAreArray;

Keys keysOf(rzULong code, const std::vector<rzLong>& instances) {
  Keys keys;
  for (const rzLong instance : instances) keys.emplace_back(code, instance, 7, 8);
  return keys;
}

TEST(CharInstances, FreeInstanceForAKey) {
  struct {
    rzLong asked;
    std::vector<rzLong> taken;
    rzLong given;
  } const cases[] = {
      {5, {}, 5},           {-1, {}, 0},         {1, {0, 1, 3}, 2},     {1, {3, 1, 0}, 2},
      {2, {0, 1, 3}, 2},    {-1, {0, 1, 2}, 3},  {-1, {-1, -1}, 0},     {4, {4}, 0},
      {0, {0, 0, 1, 2}, 1}, {-5, {-5, 0, 1}, 0}, {9, {-1, 0, 9, 1}, 2},
  };
  for (const auto& c : cases) {
    const rzOCCharKey key(65, c.asked, 3, 4);
    Keys keys = keysOf(65, c.taken);
    keys.emplace_back(66, c.asked);
    const rzOCCharKey expected(65, c.given, 3, 4);
    EXPECT_EQ(rzOCChar::makeUniqueInstanceKey(key, keys), expected) << c.asked << " " << c.given;
    std::vector<rzOCChar> characters(keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) characters[i].key(keys[i]);
    EXPECT_EQ(rzOCChar::makeUniqueInstanceKey(key, characters), expected);
  }
}

TEST(CharInstances, KeysBecomeUniqueInPlace) {
  struct {
    std::vector<rzLong> before, after;
    bool changed;
  } const cases[] = {
      {{}, {}, false},
      {{-1}, {0}, false},
      {{-1, 1}, {0, 1}, false},
      {{-1, -1, -1}, {0, 1, 2}, true},
      {{2, 2, 0, 2}, {2, 0, 1, 3}, true},
      {{3, 3}, {3, 0}, true},
  };
  for (const auto& c : cases) {
    Keys keys = keysOf(65, c.before);
    EXPECT_EQ(rzOCChar::makeUniqueInstanceKeys(keys), c.changed);
    EXPECT_THAT(keys, ElementsAreArray(keysOf(65, c.after)));
  }
}

}  // namespace

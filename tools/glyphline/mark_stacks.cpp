// SPDX-License-Identifier: Apache-2.0
#include "mark_stacks.h"

#include <algorithm>
#include <functional>

namespace glyphline {
namespace {

bool standAbove(const rzRect& a, const rzRect& b) {
  const double common = std::min(a.ur().x(), b.ur().x()) - std::max(a.x(), b.x());
  return 2 * common >= std::min(a.width(), b.width());
}

// Puts the blobs of one mark next to each other.
std::vector<Stack> stacked(BlobLine& line) {
  std::vector<BlobLine> groups;
  for (const Blob& blob : line) {
    const auto apart = std::stable_partition(groups.begin(), groups.end(), [&](const BlobLine& g) {
      return std::none_of(g.begin(), g.end(),
                          [&](const Blob& other) { return standAbove(other.level, blob.level); });
    });
    BlobLine merged;
    for (auto group = apart; group != groups.end(); ++group) {
      merged.insert(merged.end(), group->begin(), group->end());
    }
    merged.push_back(blob);
    groups.erase(apart, groups.end());
    groups.push_back(std::move(merged));
  }
  line.clear();
  std::vector<Stack> stacks;
  for (const BlobLine& group : groups) {
    Stack stack{line.size(), group.size(), group.front().level};
    for (const Blob& blob : group) stack.level = stack.level.enclose(blob.level);
    line.insert(line.end(), group.begin(), group.end());
    stacks.push_back(stack);
  }
  return stacks;
}

// Of four marks, one may be taller than the print: a bracket, a J.
double heightOf(const std::vector<Stack>& stacks) {
  if (stacks.empty()) return 0.0;
  std::vector<double> heights;
  for (const Stack& stack : stacks) heights.push_back(stack.level.height());
  const auto upper = heights.begin() + static_cast<std::ptrdiff_t>(heights.size() / 4);
  std::nth_element(heights.begin(), upper, heights.end(), std::greater<>());
  return *upper;
}

}  // namespace

void append(Print& print, BlobLine line, std::size_t number) {
  std::vector<Stack> stacks = stacked(line);
  std::sort(stacks.begin(), stacks.end(), [](const Stack& a, const Stack& b) {
    return a.level.center().x() < b.level.center().x();
  });
  const double height = heightOf(stacks);
  for (Stack stack : stacks) {
    stack.lineHeight = height;
    const auto from = line.begin() + static_cast<std::ptrdiff_t>(stack.first);
    stack.first = print.blobs.size();
    print.blobs.insert(print.blobs.end(), from, from + static_cast<std::ptrdiff_t>(stack.count));
    print.lineOf.insert(print.lineOf.end(), stack.count, number);
    print.stackOf.insert(print.stackOf.end(), stack.count, print.stacks.size());
    print.stacks.push_back(stack);
  }
}

void dropLoneSpecks(BlobLine& line, double limit) {
  const std::vector<Stack> stacks = stacked(line);
  BlobLine kept;
  for (const Stack& stack : stacks) {
    if (std::max(stack.level.width(), stack.level.height()) <= limit) continue;
    const auto from = line.begin() + static_cast<std::ptrdiff_t>(stack.first);
    kept.insert(kept.end(), from, from + static_cast<std::ptrdiff_t>(stack.count));
  }
  line = std::move(kept);
}

}  // namespace glyphline

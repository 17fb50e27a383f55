// SPDX-License-Identifier: Apache-2.0
//
// rz_PriorityQueue<T>: a binary heap of items with priorities (J. W. J. Williams, "Algorithm 232:
// Heapsort", Communications of the ACM 7(6), 1964) and handles that stay good while an item waits.
//
// The order among equal priorities follows from the heap alone and is part of the contract: a
// search that draws from the queue gives the same answer everywhere. Priorities that are not
// numbers keep the queue whole, though not in any order.
#pragma once

#include <utility>
#include <vector>

#include "rz/priority_queue_defs.h"
#include "rz/types.h"

template <class T>
class rz_PriorityQueue {
 public:
  /// With `isMinFirst` the smallest priority comes first, otherwise the greatest.
  explicit rz_PriorityQueue(bool isMinFirst) : isMinFirst_(isMinFirst) {}

  rzLong size() const { return rf_Count(heap_.size()); }
  bool empty() const { return heap_.empty(); }

  /// Gives the item's handle.
  rzLong push(T item, double priority) {
    const rzLong slot = takeSlot_(std::move(item));
    heap_.emplace_back();
    place_(size() - 1, {priority, slot});
    siftUp_(size() - 1);
    return slot;
  }

  /// The first item. Throws rz_PriorityQueueDefs::EmptyQueue if there is none.
  const T& top() const {
    if (empty()) throw rz_PriorityQueueDefs::EmptyQueue();
    return items_[at_(heap_.front().slot)];
  }

  /// Removes the first item. Throws rz_PriorityQueueDefs::EmptyQueue if there is none.
  void pop() {
    if (empty()) throw rz_PriorityQueueDefs::EmptyQueue();
    remove(heap_.front().slot);
  }

  /// Removes the item of that handle; rz_PriorityQueueDefs::BadHandle if it does not wait.
  void remove(rzLong handle) {
    if (handle < 0 || handle >= rf_Count(heapIndex_.size()) || heapIndex_[at_(handle)] < 0) {
      throw rz_PriorityQueueDefs::BadHandle();
    }
    const rzLong hole = heapIndex_[at_(handle)];
    heapIndex_[at_(handle)] = kFree;
    freeSlots_.push_back(handle);
    const double removed = priorityAt_(hole);
    const Waiting last = heap_.back();
    heap_.pop_back();
    if (last.slot == handle) return;
    place_(hole, last);
    if (comesBefore_(last.priority, removed)) {
      siftUp_(hole);
    } else {
      siftDown_(hole);
    }
  }

 private:
  static constexpr rzLong kFree = -1;

  // The priority stands beside the slot so that comparing neighbours in the heap touches nothing
  // else.
  struct Waiting {
    double priority;
    rzLong slot;
  };

  static std::size_t at_(rzLong index) { return static_cast<std::size_t>(index); }

  bool comesBefore_(double a, double b) const { return isMinFirst_ ? a < b : a > b; }
  bool comesNoLater_(double a, double b) const { return isMinFirst_ ? a <= b : a >= b; }
  double priorityAt_(rzLong k) const { return heap_[at_(k)].priority; }

  rzLong takeSlot_(T&& item) {
    if (freeSlots_.empty()) {
      items_.push_back(std::move(item));
      heapIndex_.push_back(kFree);
      return rf_Count(items_.size()) - 1;
    }
    const rzLong slot = freeSlots_.back();
    freeSlots_.pop_back();
    items_[at_(slot)] = std::move(item);
    return slot;
  }

  void place_(rzLong k, const Waiting& waiting) {
    heap_[at_(k)] = waiting;
    heapIndex_[at_(waiting.slot)] = k;
  }

  void swap_(rzLong a, rzLong b) {
    const Waiting waiting = heap_[at_(a)];
    place_(a, heap_[at_(b)]);
    place_(b, waiting);
  }

  void siftUp_(rzLong k) {
    while (k > 0) {
      const rzLong parent = (k - 1) / 2;
      if (!comesBefore_(priorityAt_(k), priorityAt_(parent))) return;
      swap_(k, parent);
      k = parent;
    }
  }

  void siftDown_(rzLong k) {
    while (k < size() / 2) {
      const rzLong left = 2 * k + 1;
      const rzLong right = left + 1;
      const bool takesRight = right < size() && comesBefore_(priorityAt_(right), priorityAt_(left));
      const rzLong child = takesRight ? right : left;
      if (comesNoLater_(priorityAt_(k), priorityAt_(child))) return;
      swap_(k, child);
      k = child;
    }
  }

  std::vector<Waiting> heap_;
  std::vector<T> items_;           // by slot, as the next
  std::vector<rzLong> heapIndex_;  // kFree for a free slot
  std::vector<rzLong> freeSlots_;  // last in, first out
  bool isMinFirst_;
};

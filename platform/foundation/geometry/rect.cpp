// SPDX-License-Identifier: Apache-2.0
#include "rz/rect.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "rz/archive.h"
#include "rz/math_error.h"
#include "rz/real_eq.h"

const rz_Instantiator rzRect::sExemplar(typeid(rzRect), &rzRect::make);

rzPersistent* rzRect::make() { return new rzRect; }

rzRect rzRect::enclose(const rzRect& other) const {
  const rzVector<2> end = lr();
  const rzVector<2> otherEnd = other.lr();
  const rzVector<2> low(std::min({x(), end.x(), other.x(), otherEnd.x()}),
                        std::min({y(), end.y(), other.y(), otherEnd.y()}));
  const rzVector<2> high(std::max({x(), end.x(), other.x(), otherEnd.x()}),
                         std::max({y(), end.y(), other.y(), otherEnd.y()}));
  return {low, high - low};
}

rzPelRect rzRect::enclosePelRect() const { return rf_EnclosePels(ul(), lr()); }

rzGenRect rzRect::map(const rzXform<2>& xform) const { return rzGenRect(*this).map(xform); }

RZ_DEFINE_DISPATCH_SERIALIZE(rzRect)

void rzRect::serialize_(rzArchive& archive, unsigned char version) {
  if (version != 0) throw rzArchive::UnknownVersion("rzRect", 0);
  rzVector<2> ul = ul_;
  rzVector<2> size = size_;
  archive || ul || size;
  if (archive.isStoring()) return;
  ul_ = ul;
  size_ = size;
}

rzPelRect rf_EnclosePels(const rzVector<2>& low, const rzVector<2>& high) {
  const std::int64_t left = rfIFloor(low.x());
  const std::int64_t top = rfIFloor(low.y());
  const std::int64_t right = rfICeil(high.x());
  const std::int64_t bottom = rfICeil(high.y());
  constexpr std::int64_t kLargest = std::numeric_limits<rzLong>::max();
  if (right - left > kLargest || bottom - top > kLargest) {
    throw rzMathError::Overflow("Rectangle does not fit into 32 bits");
  }
  return {static_cast<rzLong>(left), static_cast<rzLong>(top), static_cast<rzLong>(right - left),
          static_cast<rzLong>(bottom - top)};
}

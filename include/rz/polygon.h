// SPDX-License-Identifier: Apache-2.0
//
// rzPolygon: corners in order, the last joined to the first.
#pragma once

#include <utility>
#include <vector>

#include "rz/export.h"
#include "rz/types.h"
#include "rz/vector.h"
#include "rz/xform.h"

class rzPolygon {
 public:
  rzPolygon() = default;
  /// `fillMode` 0: a point is inside when a ray from it crosses the outline an odd number of times.
  explicit rzPolygon(std::vector<rzVector<2>> vertices, rzLong fillMode = 0)
      : vertices_(std::move(vertices)), fillMode_(fillMode) {}

  const std::vector<rzVector<2>>& vertices() const { return vertices_; }
  rzLong numVertices() const { return static_cast<rzLong>(vertices_.size()); }
  rzLong fillMode() const { return fillMode_; }

  rzPolygon map(const rzXform<2>& xform) const {
    rzPolygon result = *this;
    for (rzVector<2>& vertex : result.vertices_) vertex = xform * vertex;
    return result;
  }

  bool operator==(const rzPolygon& other) const = default;

 private:
  std::vector<rzVector<2>> vertices_;
  rzLong fillMode_ = 0;
};

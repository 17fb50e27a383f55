// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/cx_cache.h"
#include "rz/cx_align.h"

rz_CXRunParams::rz_CXRunParams() = default;
rz_CXRunParams::rz_CXRunParams(const rz_CXRunParams&) = default;
rz_CXRunParams::rz_CXRunParams(rz_CXRunParams&&) noexcept = default;
rz_CXRunParams& rz_CXRunParams::operator=(const rz_CXRunParams&) = default;
rz_CXRunParams& rz_CXRunParams::operator=(rz_CXRunParams&&) noexcept = default;
rz_CXRunParams::~rz_CXRunParams() = default;

void rz_CXRunParams::zone(rz_CXDefs::DOF dof, double start, double end) {
  dofs_[index_(dof)].start = start;
  dofs_[index_(dof)].end = end;
}

rzCXAlignRunParams::rzCXAlignRunParams() = default;

rzCXAlignRunParams::rzCXAlignRunParams(const rzCXAlignRunParams& other)
    : rz_CXRunParams(other),
      algorithm_(other.algorithm_),
      scoreUsingClutter_(other.scoreUsingClutter_) {}

rzCXAlignRunParams::rzCXAlignRunParams(rzCXAlignRunParams&&) noexcept = default;

rzCXAlignRunParams& rzCXAlignRunParams::operator=(const rzCXAlignRunParams& other) {
  return *this = rzCXAlignRunParams(other);
}

rzCXAlignRunParams& rzCXAlignRunParams::operator=(rzCXAlignRunParams&&) noexcept = default;

rzCXAlignRunParams::~rzCXAlignRunParams() = default;

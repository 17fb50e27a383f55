// SPDX-License-Identifier: Apache-2.0
#include "platform/foundation/geometry/xform_chain.h"

#include <utility>

#include "rz/archive.h"

namespace {

// A chain of an archive may share its links, and then its length can double with each link read.
constexpr rzLong kLongestLoaded = rzArchive::kMaxNesting;

const rz2XformChain* asChain(const rz2XformBase& xform) {
  return dynamic_cast<const rz2XformChain*>(&xform);
}

rzPtrHandle<rz2XformBase> linearProduct(const rz2XformBase& outer, const rz2XformBase& inner) {
  const rzVector<2> anywhere;
  return new rz2XformLinear(outer.linearXform(anywhere).xform() *
                            inner.linearXform(anywhere).xform());
}

}  // namespace

const rz_Instantiator rz2XformChain::sExemplar(typeid(rz2XformChain), &rz2XformChain::make);

rzPersistent* rz2XformChain::make() { return new rz2XformChain; }

rz2XformChain::rz2XformChain(rzPtrHandle<rz2XformBase> outer, rzPtrHandle<rz2XformBase> inner)
    : outer_(std::move(outer)),
      inner_(std::move(inner)),
      length_(lengthOf_(*outer_) + lengthOf_(*inner_)) {}

rzLong rz2XformChain::lengthOf_(const rz2XformBase& link) {
  const rz2XformChain* chain = asChain(link);
  return chain ? chain->length_ : 1;
}

bool rz2XformChain::isLinear() const { return outer_->isLinear() && inner_->isLinear(); }

rzVector<2> rz2XformChain::mapPoint(const rzVector<2>& p) const {
  return outer_->mapPoint(inner_->mapPoint(p));
}

rz2XformLinear rz2XformChain::linearXform(const rzVector<2>& p) const {
  return outer_->linearXform(inner_->mapPoint(p)).xform() * inner_->linearXform(p).xform();
}

rzPtrHandle<rz2XformBase> rz2XformChain::inverseBase() const {
  return rf_ComposeXforms(*inner_->inverseBase(), *outer_->inverseBase());
}

rzPtrHandle<rz2XformBase> rz2XformChain::cloneBase() const { return new rz2XformChain(*this); }

RZ_DEFINE_DISPATCH_SERIALIZE(rz2XformChain)

void rz2XformChain::serialize_(rzArchive& archive, unsigned char version) {
  if (version != 0) throw rzArchive::UnknownVersion("rz2XformChain", 0);
  if (archive.isStoring()) {
    rf_SerializeHandle(archive, outer_);
    rf_SerializeHandle(archive, inner_);
    return;
  }
  length_ = 0;
  rzPtrHandle<rz2XformBase> outer;
  rzPtrHandle<rz2XformBase> inner;
  rf_SerializeHandle(archive, outer);
  rf_SerializeHandle(archive, inner);
  const bool bound = outer.isBound() && inner.isBound();
  if (!bound || lengthOf_(*outer) == 0 || lengthOf_(*inner) == 0 ||
      lengthOf_(*outer) + lengthOf_(*inner) > kLongestLoaded) {
    throw rzArchive::BadFormat("Chain of transforms is not sound");
  }
  *this = rz2XformChain(outer, inner);
}

rzPtrHandle<rz2XformBase> rf_ComposeXforms(const rz2XformBase& outer, const rz2XformBase& inner) {
  if (outer.isLinear() && inner.isLinear()) return linearProduct(outer, inner);
  if (const rz2XformChain* chain = asChain(outer)) {
    return rf_ComposeXforms(*chain->outer(), *rf_ComposeXforms(*chain->inner(), inner));
  }
  if (const rz2XformChain* chain = asChain(inner); chain && outer.isLinear()) {
    if (chain->outer()->isLinear()) {
      return new rz2XformChain(linearProduct(outer, *chain->outer()), chain->inner());
    }
  }
  return new rz2XformChain(outer.cloneBase(), inner.cloneBase());
}

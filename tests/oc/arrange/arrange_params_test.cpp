// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange_params.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <limits>

namespace {

using Params = rzOCArrangeParams;
using Bytes = std::vector<unsigned char>;

const double kNan = std::numeric_limits<double>::quiet_NaN();

struct SetterCase {
  const char* name;
  std::function<void(Params&)> set;
  const char* message;  // null: accepted
};

class ArrangeParamsSetter : public testing::TestWithParam<SetterCase> {};

TEST_P(ArrangeParamsSetter, AcceptsOrLeavesUntouched) {
  Params params;
  if (!GetParam().message) {
    EXPECT_NO_THROW(GetParam().set(params));
    return;
  }
  try {
    GetParam().set(params);
    ADD_FAILURE() << "accepted";
  } catch (const rzOCArrangeDefs::BadParams& failure) {
    EXPECT_STREQ(failure.what(), GetParam().message);
  }
  EXPECT_EQ(params, Params());
}

template <class Value>
SetterCase row(const char* name, void (Params::*setter)(Value), std::decay_t<Value> value,
               const char* message = nullptr) {
  return {name, [=](Params& p) { (p.*setter)(value); }, message};
}

INSTANTIATE_TEST_SUITE_P(
    Table, ArrangeParamsSetter,
    testing::Values(
        row<const rzRange&>("range", &Params::scaleRange, rzRange(0.5, 2.0)),
        row<const rzRange&>("range_point", &Params::scaleRange, rzRange(1, 1)),
        row<const rzRange&>("range_0", &Params::scaleRange, rzRange(0, 1), "Invalid scale range"),
        row<const rzRange&>("range_reversed", &Params::scaleRange, rzRange(2, 1),
                            "Invalid scale range"),
        row<const rzRange&>("range_full", &Params::scaleRange, rzRange::FullRange(),
                            "Invalid scale range"),
        row<const rzRange&>("range_nan", &Params::scaleRange, rzRange(kNan, 1),
                            "Invalid scale range"),
        row<double>("score_0", &Params::minMatchScore, 0.0),
        row<double>("score_1", &Params::minMatchScore, 1.0),
        row<double>("score_above_1", &Params::minMatchScore, std::nextafter(1.0, 2.0),
                    "Invalid min match score"),
        row<double>("score_nan", &Params::minMatchScore, kNan, "Invalid min match score"),
        row<rzLong>("lines_0", &Params::maxLines, 0, "Invalid max lines"),
        row<rzLong>("lines_1", &Params::maxLines, 1),
        row<rzLong>("unmatched_0", &Params::maxUnmatchedChars, 0),
        row<rzLong>("unmatched_negative", &Params::maxUnmatchedChars, -1,
                    "Invalid max unmatched chars"),
        row<rzLong>("candidates_0", &Params::maxCandidates, 0),
        row<rzLong>("candidates_negative", &Params::maxCandidates, -1, "Invalid max candidates"),
        row("line_type_3", &Params::lineType, static_cast<rzOCArrangeDefs::LineType>(3),
            "Invalid line type"),
        row("line_type_negative", &Params::lineType, static_cast<rzOCArrangeDefs::LineType>(-1),
            "Invalid line type"),
        row("mode_2", &Params::orientationMode, static_cast<rzOCArrangeDefs::OrientationMode>(2),
            "Invalid orientation mode"),
        row("reference_2", &Params::orientationReference,
            static_cast<rzOCArrangeDefs::OrientationReference>(2), "Invalid orientation reference"),
        row<double>("break", &Params::lineBreakCost, -1.0, "Invalid line break cost"),
        row<double>("unmatched_cost", &Params::unmatchedCharCost, -1.0,
                    "Invalid unmatched char cost"),
        row<double>("normal", &Params::normalTransCost, -1.0, "Invalid normal translation cost"),
        row<double>("tangential", &Params::tangentialTransCost, kNan,
                    "Invalid tangential translation cost"),
        row<double>("orientation", &Params::orientationCost, -0.1, "Invalid orientation cost"),
        row<double>("scale", &Params::scaleCost, kNan, "Invalid scale cost"),
        row<double>("scale_0", &Params::scaleCost, 0.0),
        row<double>("timeout_0", &Params::timeout, 0.0),
        row<double>("timeout_negative", &Params::timeout, -1.0, "Invalid timeout"),
        row<double>("timeout_nan", &Params::timeout, kNan, "Invalid timeout")),
    [](const auto& test) { return std::string(test.param.name); });

// Every field changed.
Params unusual() {
  Params params;
  params.scaleRange(rzRange(0.25, 3.0));
  params.minMatchScore(0.125);
  params.maxLines(3);
  params.lineType(rzOCArrangeDefs::eCircular);
  params.isTextDirectionSpecified(true);
  params.straightTextDirection(rzRadian(1.5));
  params.isCircularTextDirectionClockwise(false);
  params.maxUnmatchedChars(4);
  params.orientationMode(rzOCArrangeDefs::eSpecified);
  params.orientationReference(rzOCArrangeDefs::eAbsolute);
  params.expectedOrientation(rzRadian(-0.5));
  params.lineBreakCost(5);
  params.unmatchedCharCost(6);
  params.normalTransCost(7);
  params.tangentialTransCost(8);
  params.orientationCost(9);
  params.scaleCost(10);
  params.compPoseUncertainties(true);
  params.maxCandidates(11);
  params.timeout(12);
  return params;
}

Bytes stored(const Params& params) {
  Bytes bytes;
  auto archive = rzArchive::storingTo(bytes);
  archive << params;
  return bytes;
}

TEST(ArrangeParams, BytesFromElsewhereLoadWholeOrNotAtAll) {
  const Bytes good = stored(unusual());
  for (std::size_t size = 0; size < good.size(); ++size) {
    Params params;
    auto archive = rzArchive::loadingFrom(std::span(good).first(size));
    EXPECT_THROW(archive || params, rzArchive::BadFormat) << size;
    EXPECT_EQ(params, Params());
  }
  Bytes newer = good;
  newer.front() = 1;
  Params params;
  auto archive = rzArchive::loadingFrom(newer);
  try {
    archive || params;
    ADD_FAILURE() << "loaded";
  } catch (const rzArchive::UnknownVersion& failure) {
    EXPECT_EQ(failure.name(), "oc/arrange");
  }
}

}  // namespace

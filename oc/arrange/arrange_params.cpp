// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange_params.h"

#include "oc/errors/source_names.h"

namespace {

constexpr signed char kParamsVersion = 0;

// Also false for NaN.
bool isAtLeast0(double value) { return value >= 0.0; }

void require(bool condition, const char* message) {
  if (!condition) throw rzOCArrangeDefs::BadParams(message);
}

void serializeAngle(rzArchive& archive, rzRadian& angle) {
  double radians = angle.toDouble();
  archive || radians;
  angle = rzRadian(radians);
}

}  // namespace

void rzOCArrangeParams::scaleRange(const rzRange& value) {
  require(value != rzRange::EmptyRange() && value != rzRange::FullRange() && value.start() > 0.0,
          "Invalid scale range");
  scaleRange_ = value;
}

void rzOCArrangeParams::minMatchScore(double value) {
  require(value >= 0.0 && value <= 1.0, "Invalid min match score");
  minMatchScore_ = value;
}

void rzOCArrangeParams::maxLines(rzLong value) {
  require(value >= 1, "Invalid max lines");
  maxLines_ = value;
}

void rzOCArrangeParams::lineType(rzOCArrangeDefs::LineType value) {
  require(value >= rzOCArrangeDefs::eStraight && value <= rzOCArrangeDefs::eDontCare,
          "Invalid line type");
  lineType_ = value;
}

void rzOCArrangeParams::maxUnmatchedChars(rzLong value) {
  require(value >= 0, "Invalid max unmatched chars");
  maxUnmatchedChars_ = value;
}

void rzOCArrangeParams::orientationMode(rzOCArrangeDefs::OrientationMode value) {
  require(value >= rzOCArrangeDefs::eSpecified && value <= rzOCArrangeDefs::eAverage,
          "Invalid orientation mode");
  orientationMode_ = value;
}

void rzOCArrangeParams::orientationReference(rzOCArrangeDefs::OrientationReference value) {
  require(value >= rzOCArrangeDefs::eAbsolute && value <= rzOCArrangeDefs::eRelative,
          "Invalid orientation reference");
  orientationReference_ = value;
}

void rzOCArrangeParams::lineBreakCost(double value) {
  require(isAtLeast0(value), "Invalid line break cost");
  lineBreakCost_ = value;
}

void rzOCArrangeParams::unmatchedCharCost(double value) {
  require(isAtLeast0(value), "Invalid unmatched char cost");
  unmatchedCharCost_ = value;
}

void rzOCArrangeParams::normalTransCost(double value) {
  require(isAtLeast0(value), "Invalid normal translation cost");
  normalTransCost_ = value;
}

void rzOCArrangeParams::tangentialTransCost(double value) {
  require(isAtLeast0(value), "Invalid tangential translation cost");
  tangentialTransCost_ = value;
}

void rzOCArrangeParams::orientationCost(double value) {
  require(isAtLeast0(value), "Invalid orientation cost");
  orientationCost_ = value;
}

void rzOCArrangeParams::scaleCost(double value) {
  require(isAtLeast0(value), "Invalid scale cost");
  scaleCost_ = value;
}

void rzOCArrangeParams::maxCandidates(rzLong value) {
  require(value >= 0, "Invalid max candidates");
  maxCandidates_ = value;
}

void rzOCArrangeParams::timeout(double value) {
  require(isAtLeast0(value), "Invalid timeout");
  timeout_ = value;
}

rzArchive& operator||(rzArchive& archive, rzOCArrangeParams& params) {
  signed char version = kParamsVersion;
  archive || version;
  if (version != kParamsVersion) throw rzArchive::UnknownVersion(kSourceArrange, __LINE__);
  rzOCArrangeParams fields;
  if (archive.isStoring()) fields = params;
  archive || fields.scaleRange_ || fields.minMatchScore_ || fields.maxLines_;
  rf_SerializeEnum(archive, fields.lineType_);
  archive || fields.isTextDirectionSpecified_;
  serializeAngle(archive, fields.straightTextDirection_);
  archive || fields.isCircularTextDirectionClockwise_ || fields.maxUnmatchedChars_;
  rf_SerializeEnum(archive, fields.orientationMode_);
  rf_SerializeEnum(archive, fields.orientationReference_);
  serializeAngle(archive, fields.expectedOrientation_);
  archive || fields.lineBreakCost_ || fields.unmatchedCharCost_ || fields.normalTransCost_ ||
      fields.tangentialTransCost_ || fields.orientationCost_ || fields.scaleCost_ ||
      fields.compPoseUncertainties_ || fields.maxCandidates_ || fields.timeout_;
  if (archive.isLoading()) params = fields;
  return archive;
}

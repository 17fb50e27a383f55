// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/sub_model/tool/sub_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

#include "rz/attention.h"
#include "rz/pel_functions.h"
#include "rz/timeout.h"
#include "support/draw.h"
#include "support/noise.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;
using Result = std::optional<rzWarpSubModelResult>;

constexpr double kUnlimited = std::numeric_limits<double>::infinity();

Image letter(const draw::Shape& shape, double x = 13, double y = 18, rzLong width = 26,
             rzLong height = 36) {
  rzPelBuffer<unsigned char> image = draw::paper(width, height);
  draw::fill(image, shape, rzXform<2>(rzMatrix<2>(), rzVector<2>(x, y)));
  return image;
}

rz_SubModelTool trained(const Image& image, const Image& mask = {}) {
  rz_SubModelTool tool;
  tool.train(rzWarpSubModel(image, mask, ""), rzWarpSubModelCorTrainParams(), nullptr, 0);
  return tool;
}

struct RunOptions {
  rzXform<2> start;
  double reachX = kUnlimited;
  double reachY = kUnlimited;
  rzPelRect partialMatch{0, 0, 1000, 1000};
  double accept = 0.0;
};

Result best(const rz_SubModelTool& tool, const Image& image, const Image& mask = {},
            const RunOptions& options = {}) {
  rzWarpSubModelCorRunParams params;
  params.acceptThreshold(options.accept);
  params.partialMatch(options.partialMatch);
  params.xyUncertainty(options.reachX, options.reachY);
  const rzPtrHandle_const<rz2XformBase> start(new rz2XformLinear(options.start));
  rz_SubModelResultSet set;
  tool.run(image, mask, start, params, {}, set, nullptr, 0);
  if (set.numFound() == 0) return {};
  EXPECT_EQ(set.results()[0].pose().matrix(), rzMatrix<2>());
  return set.results()[0];
}

rzVector<2> shiftOf(const Result& result) { return result->pose().trans(); }

// The definition of the score, over every place.
double plainBestScore(const Image& model, const Image& modelMask, const Image& image,
                      const Image& mask) {
  double bestScore = 0.0;
  double numCarePels = 0;
  const auto counts = [](const Image& m, rzLong x, rzLong y) {
    return !m.isBound() || *m.pointToPel(x, y) >= 128;
  };
  for (rzLong dy = -model.height(); dy <= image.height(); ++dy) {
    for (rzLong dx = -model.width(); dx <= image.width(); ++dx) {
      double n = 0, a = 0, b = 0, aa = 0, bb = 0, ab = 0;
      numCarePels = 0;
      for (rzLong y = 0; y < model.height(); ++y) {
        for (rzLong x = 0; x < model.width(); ++x) {
          if (!counts(modelMask, x, y)) continue;
          ++numCarePels;
          if (!image.window().contains(rzPair<rzLong>(x + dx, y + dy))) continue;
          if (!counts(mask, x + dx, y + dy)) continue;
          const double p = *model.pointToPel(x, y);
          const double q = *image.pointToPel(x + dx, y + dy);
          n += 1, a += p, b += q, aa += p * p, bb += q * q, ab += p * q;
        }
      }
      const double va = n * aa - a * a;
      const double vb = n * bb - b * b;
      const double covariance = n * ab - a * b;
      if (va <= 0 || vb <= 0 || covariance <= 0) continue;
      bestScore = std::max(bestScore, covariance * covariance / va / vb * n / numCarePels);
    }
  }
  return bestScore;
}

TEST(SubModel, ThePictureItselfScoresExactlyOneWithoutAShift) {
  Image image = letter(draw::letterR());
  image.clientFromImageXform(
      rzXform<2>(rzMatrix<2>(0.1, 0.7, -0.3, 1.9), rzVector<2>(1.0 / 3.0, 1e6 + 0.1)));
  for (const Image& mask : {Image(), Image(noise(image.window(), 3))}) {
    const Result result = best(trained(image, mask), image, mask);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->score(), 1.0);
    EXPECT_EQ(shiftOf(result), rzVector<2>());
  }
}

TEST(SubModel, ScoreIsThatOfThePlainDefinition) {
  const rzPelRect modelRect(0, 0, 7, 6);
  const rzPelRect imageRect(0, 0, 9, 5);
  for (std::uint32_t seed = 0; seed < 20; ++seed) {
    const Image model = noise(modelRect, seed);
    const Image image = noise(imageRect, seed + 100);
    const Image modelMask = noise(modelRect, seed + 200);
    const Image mask = noise(imageRect, seed + 300);
    for (int which = 0; which < 4; ++which) {
      const Image a = (which & 1) != 0 ? modelMask : Image();
      const Image b = (which & 2) != 0 ? mask : Image();
      const Result result = best(trained(model, a), image, b);
      const double expected = plainBestScore(model, a, image, b);
      ASSERT_TRUE(result);
      EXPECT_NEAR(result->score(), expected, 1e-12) << seed << ", masks " << which;
    }
  }
}

TEST(SubModel, FallsSmoothlyAsTheLetterIsBlurred) {
  const Image sharp = letter(draw::letterK());
  const rz_SubModelTool tool = trained(sharp);
  rzPelBuffer<unsigned char> blurred = rfPelCopy(sharp);
  double before = 1.0;
  for (int step = 0; step < 6; ++step) {
    const Image source = rfPelCopy(blurred);
    for (rzLong y = 1; y < 35; ++y) {
      for (rzLong x = 1; x < 25; ++x) {
        int sum = 0;
        for (rzLong k = 0; k < 9; ++k) sum += *source.pointToPel(x + k % 3 - 1, y + k / 3 - 1);
        *blurred.pointToPel(x, y) = static_cast<unsigned char>(sum / 9);
      }
    }
    const double score = best(tool, blurred)->score();
    EXPECT_LT(score, before);
    EXPECT_GT(score, before - 0.15);
    before = score;
  }
}

TEST(SubModel, ALargeModelOverASmallPictureIsWorthItsShare) {
  const Image large = letter(draw::letterA());
  Image half = large;
  half.window(rzPelRect(0, 0, 26, 18), false);
  EXPECT_DOUBLE_EQ(best(trained(large), half)->score(), 0.5);
  EXPECT_EQ(best(trained(half), large)->score(), 1.0);
  RunOptions whole;
  whole.partialMatch = rzPelRect();
  EXPECT_FALSE(best(trained(large), half, {}, whole));
  EXPECT_EQ(best(trained(half), large, {}, whole)->score(), 1.0);
}

TEST(SubModel, PoseCarriesTheModelsClientFrameToThatOfThePicture) {
  Image model = letter(draw::letterF());
  model.offset(rzPair<rzLong>(40, -30));
  Image image = letter(draw::letterF(), 30, 41, 60, 70);
  const rzMatrix<2> client(0.0, -0.5, 0.5, 0.0);
  model.clientFromImageXform(rzXform<2>(client, rzVector<2>(5, 6)));
  image.clientFromImageXform(rzXform<2>(client, rzVector<2>(-70, 8)));
  const Result result = best(trained(model), image);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->score(), 1.0);
  const rzVector<2> inModel = model.clientFromImageXform() * rzVector<2>(40 + 13, -30 + 18);
  const rzVector<2> inImage = image.clientFromImageXform() * rzVector<2>(30, 41);
  EXPECT_LT((inModel + shiftOf(result)).distance(inImage), 1e-12);
}

TEST(SubModel, LooksAroundTheStartPoseAsFarAsTheUncertainty) {
  const Image model = letter(draw::letterF());
  const Image image = letter(draw::letterF(), 30, 41, 60, 70);  // shifted by (17, 23)
  struct Case {
    const char* name;
    rzVector<2> start;
    double reachX, reachY;
    bool isReached;
  };
  const Case cases[] = {
      {"just_reached", {0, 0}, 17, 23, true},   {"column_missing", {0, 0}, 16.9, 23, false},
      {"row_missing", {0, 0}, 17, 22.9, false}, {"started_there", {17.3, 22.6}, 0, 0, true},
      {"from_beyond", {20, 30}, 3, 7, true},    {"far_away", {1e9, -1e12}, 1e9, 1e9, false},
      {"negative", {17, 23}, -1, 5, false},     {"not_a_number", {17, 23}, NAN, 5, false},
  };
  for (const Case& c : cases) {
    RunOptions options;
    options.start = rzXform<2>(rzMatrix<2>(), c.start);
    options.reachX = c.reachX;
    options.reachY = c.reachY;
    const Result result = best(trained(model), image, {}, options);
    EXPECT_EQ(result && result->score() == 1.0, c.isReached) << c.name;
  }
}

TEST(SubModel, AmongEqualScoresTheSmallestShiftCounts) {
  rzPelBuffer<unsigned char> stripes(rzPelRect(0, 0, 64, 20), 32);
  for (rzLong x = 0; x < 64; ++x) {
    for (rzLong y = 0; y < 20; ++y) *stripes.pointToPel(x, y) = x % 8 < 4 ? 20 : 200;
  }
  Image model = stripes;
  model.window(rzPelRect(24, 4, 16, 8), false);
  EXPECT_EQ(shiftOf(best(trained(model), stripes)), rzVector<2>());
  RunOptions aside;
  aside.start = rzXform<2>(rzMatrix<2>(), rzVector<2>(7, 2));
  EXPECT_EQ(shiftOf(best(trained(model), stripes, {}, aside)), rzVector<2>(8, 2));
}

TEST(SubModel, NothingIsFoundWhereEverythingScoresZeroOrTooLittle) {
  const Image model = letter(draw::letterF());
  EXPECT_FALSE(best(trained(model), draw::paper(26, 36)));
  rzPelBuffer<unsigned char> nothing(rzPelRect(0, 0, 26, 36), 32);
  EXPECT_FALSE(best(trained(model), model, nothing));
  RunOptions strict;
  strict.accept = 1.0;
  EXPECT_TRUE(best(trained(model), model, {}, strict));
  EXPECT_FALSE(best(trained(model), letter(draw::letterR()), {}, strict));
}

TEST(SubModel, RefusesWhatShowsNothing) {
  const Image flat = draw::paper(10, 10);
  const Image image = letter(draw::letterF());
  rzPelBuffer<unsigned char> nothing(image.window(), 32);
  rz_SubModelTool tool = trained(image);
  const rzWarpSubModelCorTrainParams params;
  const rzWarpSubModel onePel(noise(rzPelRect(0, 0, 1, 1), 1), "");
  for (const auto& model : {rzWarpSubModel(flat, ""), rzWarpSubModel(image, nothing, ""), onePel}) {
    EXPECT_THROW(tool.train(model, params, nullptr, 0), rz_SubModelDefs::Errors);
  }
  EXPECT_EQ(best(tool, image)->score(), 1.0);  // the model before
  EXPECT_THROW(best(rz_SubModelTool(), image), rz_SubModelDefs::Errors);
}

}  // namespace

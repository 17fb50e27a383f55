// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/correlation/nrm_search.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "rz/attention.h"
#include "rz/pel_functions.h"
#include "rz/timeout.h"
#include "support/draw.h"
#include "support/noise.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;

const rzPelRect kAnywhere(0, 0, 1, 1);
// A parabola through three samples of a correlation peak is not the peak itself.
constexpr double kSubPel = 0.1;

Image letter(const draw::Shape& shape, double x, double y, rzLong width, rzLong height,
             unsigned char ink = 30) {
  rzPelBuffer<unsigned char> image = draw::paper(width, height);
  draw::fill(image, shape, rzXform<2>(rzMatrix<2>(), rzVector<2>(x, y)), ink);
  return image;
}

// As a lens draws it: binomial weights 1 2 1 both ways.
Image blurred(const Image& image) {
  rzPelBuffer<unsigned char> result = rfPelCopy(image);
  for (rzLong y = 1; y + 1 < image.height(); ++y) {
    for (rzLong x = 1; x + 1 < image.width(); ++x) {
      int sum = 0;
      for (rzLong v = -1; v <= 1; ++v) {
        for (rzLong u = -1; u <= 1; ++u) {
          sum += (v == 0 ? 2 : 1) * (u == 0 ? 2 : 1) * *image.pointToPel(x + u, y + v);
        }
      }
      *result.pointToPel(x, y) = static_cast<unsigned char>((sum + 8) / 16);
    }
  }
  return result;
}

rzNrmSearchModel trained(const Image& image) {
  rzNrmSearchModel model;
  model.train(image, rzNrmSearchTrainParams(), nullptr, 0);
  return model;
}

std::vector<rzNrmSearchResult> search(const rzNrmSearchModel& model, const Image& image,
                                      double accept = 0.3, const rzPelRect& where = kAnywhere,
                                      std::int16_t maxNumResults = -1) {
  rzNrmSearchRunParams params(rzNrmSearchDefs::eCorrelation);
  params.accept(accept);
  params.xyOverlap(0.3);
  params.maxNumResults(maxNumResults);
  rzNrmSearchResultSet set;
  model.run(image, params, where, set, nullptr, 0);
  return set.results();
}

TEST(NrmSearch, FindsTheLetterToATenthOfAPel) {
  const rzNrmSearchModel model = trained(blurred(letter(draw::letterR(), 13, 18, 26, 36)));
  // Fifths of a pel are what the drawing resolves.
  for (const rzVector<2> shift : {rzVector<2>(0, 0), {5, 7}, {3.4, 4.2}, {8.2, 2.6}, {0.4, 9.8}}) {
    const auto results =
        search(model, blurred(letter(draw::letterR(), 20 + shift.x(), 25 + shift.y(), 60, 70)));
    ASSERT_EQ(results.size(), 1u);
    EXPECT_TRUE(results[0].found());
    EXPECT_NEAR(results[0].location().x(), 7 + shift.x(), kSubPel);
    EXPECT_NEAR(results[0].location().y(), 7 + shift.y(), kSubPel);
  }
}

TEST(NrmSearch, LocationIsWhereTheTemplatesClientOriginLands) {
  Image pattern = letter(draw::letterF(), 13, 18, 26, 36);
  pattern.offset(rzPair<rzLong>(100, 50));
  pattern.clientFromImageXform(rzXform<2>(rzMatrix<2>(), rzVector<2>(-113, -68)));  // F's middle
  Image picture = letter(draw::letterF(), 31, 42, 60, 75);
  picture.offset(rzPair<rzLong>(-10, 5));
  const rzXform<2> client(rzMatrix<2>(0.0, -2.0, 2.0, 0.0), rzVector<2>(7, 9));
  picture.clientFromImageXform(client);
  const auto results = search(trained(pattern), picture);
  ASSERT_EQ(results.size(), 1u);
  EXPECT_LT(results[0].location().distance(client * rzVector<2>(21, 47)), 2.0 * kSubPel);
}

// Correlation at every place, written down as it is defined.
double bestPlainCorrelation(const Image& pattern, const Image& picture) {
  double best = -1.0;
  const rzLong n = pattern.width() * pattern.height();
  for (rzLong y = 0; y + pattern.height() <= picture.height(); ++y) {
    for (rzLong x = 0; x + pattern.width() <= picture.width(); ++x) {
      double a = 0, b = 0, aa = 0, bb = 0, ab = 0;
      for (rzLong k = 0; k < n; ++k) {
        const double p = *pattern.pointToPel(k % pattern.width(), k / pattern.width());
        const double q = *picture.pointToPel(x + k % pattern.width(), y + k / pattern.width());
        a += p, b += q, aa += p * p, bb += q * q, ab += p * q;
      }
      best = std::max(best, (n * ab - a * b) / std::sqrt((n * aa - a * a) * (n * bb - b * b)));
    }
  }
  return best;
}

TEST(NrmSearch, ScoreIsTheBestPlainCorrelationOnItsScaleOrAtMostAHalf) {
  const draw::Shape letters[] = {draw::letterF(), draw::letterR(), draw::letterK(),
                                 draw::letterA(), draw::letterZ(), draw::letterO()};
  for (const draw::Shape& a : letters) {
    const Image pattern = letter(a, 13, 18, 26, 36);
    for (const draw::Shape& b : letters) {
      const Image picture = letter(b, 20.6, 26, 40, 50);
      const double correlation = (bestPlainCorrelation(pattern, picture) - 0.86) / 0.14;
      const auto results = search(trained(pattern), picture, 0.0);
      ASSERT_FALSE(results.empty());
      if (&a == &b) {
        EXPECT_NEAR(results[0].score(), correlation, 1e-9);
        EXPECT_GT(correlation, 0.5);
      } else {
        EXPECT_LT(results[0].score(), 0.3);
      }
    }
  }
}

TEST(NrmSearch, GivesTheBestOfEachPlaceFirstAndNoMoreThanAskedFor) {
  rzPelBuffer<unsigned char> picture = noise(rzPelRect(0, 0, 120, 60), 3, 190, 220);
  for (const double x : {20.0, 60.0, 98.0}) {
    draw::fill(picture, draw::letterA(), rzXform<2>(rzMatrix<2>(), rzVector<2>(x, 30)),
               static_cast<unsigned char>(x));
  }
  const rzNrmSearchModel model = trained(letter(draw::letterA(), 13, 18, 26, 36));
  const auto all = search(model, picture);
  ASSERT_EQ(all.size(), 3u);
  EXPECT_NEAR(all[0].location().x(), 7, kSubPel);  // the darkest one suffers least from noise
  EXPECT_GE(all[0].score(), all[1].score());
  EXPECT_GT(all[1].score(), all[2].score());
  const auto some = search(model, picture, 0.5 * (all[1].score() + all[2].score()));
  ASSERT_EQ(some.size(), 2u) << "what is accepted is scored as if everything were";
  EXPECT_EQ(some[1].score(), all[1].score());
  EXPECT_EQ(some[1].location(), all[1].location());
  // One result alone goes a way of its own.
  for (const rzPelRect where : {kAnywhere, rzPelRect(0, 0, 30, 24), rzPelRect(30, 0, 80, 24)}) {
    const auto one = search(model, picture, 0.3, where, 1);
    ASSERT_EQ(one.size(), 1u);
    EXPECT_EQ(one[0].score(), search(model, picture, 0.3, where)[0].score());
    EXPECT_EQ(one[0].location(), search(model, picture, 0.3, where)[0].location());
  }
  EXPECT_EQ(search(model, picture, 0.3, kAnywhere, 0).size(), 0u);
}

TEST(NrmSearch, RectangleRestrictsTheTemplatesCorner) {
  rzPelBuffer<unsigned char> picture = draw::paper(120, 60);
  for (const double x : {20.0, 60.0}) {
    draw::fill(picture, draw::letterA(), rzXform<2>(rzMatrix<2>(), rzVector<2>(x, 30)));
  }
  const rzNrmSearchModel model = trained(letter(draw::letterA(), 13, 18, 26, 36));
  const auto second = search(model, picture, 0.3, rzPelRect(40, 5, 20, 20));
  ASSERT_EQ(second.size(), 1u);
  EXPECT_NEAR(second[0].location().x(), 47, kSubPel);
  const auto atRim = search(model, picture, 0.3, rzPelRect(47, 12, 1, 1));
  ASSERT_EQ(atRim.size(), 1u);
  EXPECT_EQ(atRim[0].location(), rzVector<2>(47, 12));  // no neighbours to interpolate with
  EXPECT_TRUE(search(model, picture, 0.3, rzPelRect(300, 300, 5, 5)).empty());
}

TEST(NrmSearch, NothingIsFoundWhereNothingCanBe) {
  rzNrmSearchModel model = trained(letter(draw::letterR(), 13, 18, 26, 36));
  EXPECT_THROW(model.train(draw::paper(20, 20), rzNrmSearchTrainParams(), nullptr, 0),
               rzNrmSearchDefs::Errors);
  EXPECT_EQ(search(model, letter(draw::letterR(), 13, 18, 26, 36)).size(), 1u) << "still trained";
  EXPECT_TRUE(search(model, draw::paper(60, 70), 0.01).empty());                     // flat
  EXPECT_TRUE(search(model, letter(draw::letterR(), 30, 30, 60, 60, 250)).empty());  // brighter
  EXPECT_TRUE(search(model, letter(draw::letterR(), 12, 18, 25, 36), 0.0).empty());  // too narrow
  EXPECT_TRUE(search(model, letter(draw::letterR(), 13, 17, 26, 35), 0.0).empty());  // too low
  EXPECT_TRUE(search(rzNrmSearchModel(), draw::paper(60, 70), 0.0).empty());
  const rzTimeoutScope noTime(0.0);
  EXPECT_THROW(search(model, draw::paper(60, 70)), rzTimeout::Expired);
}

}  // namespace

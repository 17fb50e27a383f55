// SPDX-License-Identifier: Apache-2.0
#include "page/diag_page.h"

#include <gmock/gmock.h>
#include <leptonica/allheaders.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <numbers>

#include "page/outline.h"
#include "page/png.h"
#include "rz/pel_functions.h"
#include "rz/xform_radial.h"

namespace {

using namespace std::string_literals;
using glyphline::base64Of;
using glyphline::diagPage;
using glyphline::Outline;
using glyphline::outlineOf;
using glyphline::PageHead;
using Json = nlohmann::json;
using Point = rzVector<2>;

const std::string kDataStart = R"(<script type="application/json" id="data">)";

// The data block, as a browser would cut it out: up to the first end of a script element.
Json dataOf(const std::string& page) {
  const std::size_t start = page.find(kDataStart) + kDataStart.size();
  return Json::parse(page.substr(start, page.find("</script", start) - start));
}

rzPelBuffer<unsigned char> slope(rzLong width, rzLong height) {
  rzPelBuffer<unsigned char> image(rzPelRect(0, 0, width, height));
  for (rzLong y = 0; y < height; ++y) {
    for (rzLong x = 0; x < width; ++x) {
      *image.pointToPel(x, y) = static_cast<unsigned char>(7 * x + 31 * y);
    }
  }
  return image;
}

rzGraphicList listOf(rzGraphic* graphic) {
  rzGraphicList list;
  list.append(graphic, true);
  return list;
}

rzGraphicList segment(const Point& a, const Point& b) {
  return listOf(new rzGraphicSimple<rzLineSeg>(rzLineSeg(a, b), rzColor::orangeColor()));
}

TEST(DiagPage, NoNameOrTextEndsTheBlockThatItStandsIn) {
  for (const std::string& hostile :
       {"<script>alert(1)</script>"s, "</script><img src=x onerror=alert(1)>"s, "<!--<script>"s,
        "\"},{{style}}&lt;\\u003c\\"s, "a\0b\tc\n\x7f"s, "\u2028]]>\u00e9\U0001f600"s}) {
    rzDiagObject diag;
    rzDiagRecord* record = rf_AddImage(&diag, slope(3, 2), hostile, false);
    record->text(hostile, hostile);
    record->graphics({}, rzDiagDefs::ePelCoordinates, hostile);
    PageHead head{hostile, true, {{"Text", hostile}}, {{hostile, hostile}}};
    const std::string page = diagPage(diag, head);
    const Json data = dataOf(page);
    const Json& shown = data["records"][0];
    for (const Json& text :
         {data["head"]["title"], data["head"]["facts"][0][1], data["head"]["meanings"][hostile],
          shown["title"], shown["views"][0]["name"], shown["views"][0]["layers"][0]["label"],
          shown["texts"][0]["label"], shown["texts"][0]["content"]}) {
      EXPECT_EQ(text, hostile);
    }
    const std::size_t start = page.find(kDataStart) + kDataStart.size();
    EXPECT_EQ(page.find('<', start), page.find("</script>", start));
  }
}

TEST(DiagPage, BytesThatAreNoUtf8AreReplaced) {
  rzDiagObject diag;
  rf_AddText(&diag, "ok", "\xff\xc3(");
  EXPECT_EQ(dataOf(diagPage(diag, {}))["records"][0]["title"], "\ufffd\ufffd(");
}

TEST(DiagPage, APictureThatManyRecordsShareIsKeptOnce) {
  const auto image = slope(40, 30);
  rzPelBuffer<unsigned char> part = image;
  part.window(rzPelRect(5, 6, 10, 10), false);
  rzDiagObject diag;
  rf_AddImage(&diag, image, "a", false);
  rf_AddImage(&diag, image, "again", false);
  rf_AddImage(&diag, part, "part", false)->image(image, "whole", false);
  rf_AddImage(&diag, {}, "none", false);
  const Json data = dataOf(diagPage(diag, {}));
  ASSERT_EQ(data["pictures"].size(), 2U);
  EXPECT_EQ(data["records"][1]["views"][0]["picture"], 0);
  EXPECT_EQ(data["records"][2]["views"][0]["picture"], 1);
  EXPECT_EQ(data["records"][2]["views"][1]["picture"], 0);
  EXPECT_EQ(data["records"][2]["views"][0]["x"], 5);
  EXPECT_EQ(data["records"][2]["views"][0]["y"], 6);
  EXPECT_EQ(data["pictures"][1]["width"], 10);
  EXPECT_TRUE(data["records"][3]["views"].empty());
}

TEST(DiagPage, GraphicsAreBroughtToThePelsOfTheirPicture) {
  // Client (x, y) is shown at pel (10 - 2 y, 20 + 2 x).
  rzPelBuffer<unsigned char> image = slope(40, 30);
  image.imageFromClientXform(rzXform<2>(rzMatrix<2>(0, -2, 2, 0), Point(10, 20)));
  rzDiagObject diag;
  rzDiagRecord* record = rf_AddImage(&diag, image, "picture", false);
  record->graphics(segment({1, 2}, {3, 4}), rzDiagDefs::ePelCoordinates, "pel");
  record->graphics(segment({1, 2}, {3, 4}), rzDiagDefs::eClientCoordinates, "client");
  const rzDiagLevelScope below(&diag);
  rf_AddGraphics(&diag, segment({0, 0}, {1, 0}), "below", rzDiagDefs::eClientCoordinates);
  rf_AddText(&diag, "no picture", "text");
  const rzDiagLevelScope deeper(&diag);
  rf_AddGraphics(&diag, segment({5, 6}, {7, 8}), "alone", rzDiagDefs::eClientCoordinates);
  const Json records = dataOf(diagPage(diag, {}))["records"];
  const auto strokes = [&records](std::size_t i, std::size_t layer) {
    return records[i]["views"][0]["layers"][layer]["shapes"][0]["strokes"][0];
  };
  EXPECT_EQ(strokes(0, 0), Json({1, 2, 3, 4}));
  EXPECT_EQ(strokes(0, 1), Json({6, 22, 2, 26}));
  EXPECT_EQ(strokes(1, 0), Json({10, 20, 10, 22}));
  EXPECT_EQ(records[1]["views"][0]["picture"], 0);
  EXPECT_EQ(strokes(3, 0), Json({5, 6, 7, 8}));
  EXPECT_TRUE(records[3]["views"][0]["picture"].is_null());
  EXPECT_EQ(records[0]["views"][0]["client"], Json({0, 0.5, -10, -0.5, 0, 5}));
  EXPECT_EQ(records[0]["views"][0]["layers"][0]["shapes"][0]["color"], "#ffa500");
}

TEST(DiagPage, WhatCannotBeDrawnIsLeftOut) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  rzGraphicList list = segment({nan, 0}, {1, 1});
  list.append(segment({0, 0}, {1, 1e300}).items()[0], true);
  for (const double radius : {nan, infinity, 1e300}) {
    const rzEllipseArc2 arc(rzCircle({0, 0}, radius), rzRadian(0), rzRadian(1));
    list.append(new rzGraphicSimple<rzEllipseArc2>(arc, rzColor::redColor()), true);
  }
  list.append(segment({1, 2}, {3, 4}).items()[0], true);
  rzDiagObject diag;
  rf_AddGraphics(&diag, list, "lost", rzDiagDefs::ePelCoordinates);
  const Json shapes = dataOf(diagPage(diag, {}))["records"][0]["views"][0]["layers"][0]["shapes"];
  ASSERT_EQ(shapes.size(), 1U);
  EXPECT_EQ(shapes[0]["strokes"][0], Json({1, 2, 3, 4}));
}

TEST(Outline, EveryKindOfGraphicHasItsStrokes) {
  const rzColor red = rzColor::redColor();
  const rzRect rect(1, 2, 10, 20);
  struct Row {
    rzPtrHandle_const<rzGraphic> graphic;
    const char* kind;
    bool isClosed, isFilled;
    std::vector<Point> points;
  };
  const std::vector<Point> corners{{1, 2}, {11, 2}, {11, 22}, {1, 22}};
  using Filled = rzGraphicWithFill<rzRect, rzGenRect>;
  using GenFilled = rzGraphicWithFill<rzGenRect, rzGenRect>;
  for (const Row& row : {
           Row{new rzGraphicSimple<rzAffineRectangle>({{0, 0}, {4, 1}, {-1, 4}}, red),
               "box",
               true,
               false,
               {{0, 0}, {4, 1}, {3, 5}, {-1, 4}}},
           Row{new rzGraphicSimple<rzRect>(rect, red), "outline", true, false, corners},
           Row{new rzGraphicSimple<rzGenRect>(rect, red), "outline", true, false, corners},
           Row{new Filled(rect, red, true), "outline", true, true, corners},
           Row{new GenFilled(rect, red, false), "outline", true, false, corners},
           Row{new rzGraphicSimple<rzLineSeg>({{0, 1}, {2, 3}}, red),
               "line",
               false,
               false,
               {{0, 1}, {2, 3}}},
           Row{new rzGraphicSimple<rzCoordAxes>({{0, 0}, {3, 0}, {0, 3}}, red),
               "axes",
               false,
               false,
               {{3, 0}, {0, 0}, {0, 3}}},
           Row{new rzGraphicPointIcon({7, 8}, red), "point", false, false, {{7, 8}}},
       }) {
    SCOPED_TRACE(row.kind);
    const Outline outline = outlineOf(*row.graphic, nullptr);
    EXPECT_EQ(outline.kind, row.kind);
    EXPECT_EQ(outline.isClosed, row.isClosed);
    EXPECT_EQ(outline.isFilled, row.isFilled);
    ASSERT_EQ(outline.strokes.size(), 1U);
    EXPECT_EQ(outline.strokes[0], row.points);
  }
}

TEST(Outline, ArcsRunFromEndToEndWithinAFiftiethOfAPel) {
  for (const double span : {0.0, 0.5, -2.0, 2 * std::numbers::pi, 100.0}) {
    const rzEllipseArc2 arc(rzCircle({50, 60}, 400.0), rzRadian(0.3), rzRadian(span));
    const Outline outline =
        outlineOf(rzGraphicSimple<rzEllipseArc2>(arc, rzColor::redColor()), nullptr);
    const std::vector<Point>& points = outline.strokes.at(0);
    EXPECT_LT(points.front().distance(arc.p1()), 1e-9);
    const Point end = std::abs(span) > 7.0 ? arc.p1() : arc.p2();  // at most one turn is drawn
    EXPECT_LT(points.back().distance(end), 1e-9);
    for (std::size_t i = 1; i < points.size(); ++i) {
      EXPECT_GT(((points[i - 1] + points[i]) * 0.5).distance({50, 60}), 400.0 - 0.021);
    }
  }
}

TEST(Outline, ALensBendsTheSides) {
  const rz2XformRadial lens({0, 0}, 1e-3);
  const Outline outline =
      outlineOf(rzGraphicSimple<rzLineSeg>({{-10, 10}, {10, 10}}, rzColor::redColor()), &lens);
  const std::vector<Point>& points = outline.strokes.at(0);
  EXPECT_LT(points.front().distance(lens.mapPoint({-10, 10})), 1e-9);
  EXPECT_LT(points.back().distance(lens.mapPoint({10, 10})), 1e-9);
  EXPECT_LT(points[points.size() / 2].distance({0, 11}), 1e-9);
}

TEST(Png, HoldsThePelsOfTheWindow) {
  rzPelBuffer<unsigned char> image = slope(37, 23);
  image.window(rzPelRect(4, 3, 30, 17), false);
  const std::string bytes = glyphline::pngOf(image);
  PIX* pix = pixReadMem(reinterpret_cast<const l_uint8*>(bytes.data()), bytes.size());
  ASSERT_NE(pix, nullptr);
  EXPECT_EQ(pixGetDepth(pix), 8);
  ASSERT_EQ(pixGetWidth(pix), 30);
  ASSERT_EQ(pixGetHeight(pix), 17);
  for (int y = 0; y < 17; ++y) {
    for (int x = 0; x < 30; ++x) {
      l_uint32 value = 0;
      pixGetPixel(pix, x, y, &value);
      ASSERT_EQ(value, *image.pointToPel(4 + x, 3 + y)) << x << "," << y;
    }
  }
  pixDestroy(&pix);
}

TEST(Base64, HasTheVectorsOfItsStandard) {
  const std::string cases[][2] = {{"", ""},
                                  {"f", "Zg=="},
                                  {"fo", "Zm8="},
                                  {"foo", "Zm9v"},
                                  {"foob", "Zm9vYg=="},
                                  {"fooba", "Zm9vYmE="},
                                  {"foobar", "Zm9vYmFy"},
                                  {"\xff\xfe\xfb", "//77"}};
  for (const auto& [bytes, text] : cases) EXPECT_EQ(base64Of(bytes), text);
}

}  // namespace

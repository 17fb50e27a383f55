// SPDX-License-Identifier: Apache-2.0
//
// The arranger as a caller sees it, on drawn letters.
#include <gmock/gmock.h>

#include <cmath>
#include <string>

#include "oc/arrange.h"
#include "oc/extract/drawn_alphabet.h"
#include "oc/oc_defs.h"
#include "rz/attention.h"
#include "rz/diag.h"
#include "rz/pel_functions.h"
#include "rz/timeout.h"
#include "rz/xform_radial.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Gt;
using testing::IsEmpty;
using rzD = rzOCArrangeDefs;
using Buffer = rzPelBuffer<unsigned char>;
using Image = rzPelBuffer_const<unsigned char>;

// What drawing by supersampling and the finder's refinement leave.
constexpr double kPels = 0.5;
constexpr double kDegrees = 1.5;

const rzOCAlphabet& letters() {
  static const auto alphabet = drawn::alphabet(
      {drawn::character('F', draw::letterF()), drawn::character('R', draw::letterR()),
       drawn::character('K', draw::letterK()), drawn::character('Z', draw::letterZ()),
       drawn::blank(' ')});
  return *alphabet;
}

std::vector<rzLong> keysOf(const std::string& text) { return {text.begin(), text.end()}; }

draw::Shape shapeOf(char letter) {
  switch (letter) {
    case 'F':
      return draw::letterF();
    case 'R':
      return draw::letterR();
    case 'K':
      return draw::letterK();
    default:
      return draw::letterZ();
  }
}

// The text in rows of up to four, 34 units from letter to letter and 60 from row to row, turned by
// `degrees` about the middle of the picture; '.' leaves a place empty.
struct Print {
  explicit Print(const std::string& text, double degrees = 0.0) : image(draw::paper(220, 180)) {
    const rzXform<2> turn = drawn::placed(110, 90, degrees);
    for (std::size_t i = 0; i < text.size(); ++i) {
      const double column = static_cast<double>(i % 4);
      const double row = static_cast<double>(i / 4);
      poses.push_back(turn * drawn::placed(34 * column - 51, 60 * row - 30));
      if (text[i] != '.' && text[i] != ' ') {
        draw::fill(image, shapeOf(text[i]), poses.back());
      }
    }
  }
  Buffer image;
  std::vector<rzXform<2>> poses;
};

rzOCArrangeResults arrange(const Image& image, const std::string& text,
                           const rzOCArrangeParams& params = {}) {
  rzOCArrangeResults results;
  rfOCArrange(image, letters(), keysOf(text), params, results);
  return results;
}

// Client poses of all positions, in the order of the text.
std::vector<rzXform<2>> clientPoses(const rzOCArrangeResults& results) {
  std::vector<rzXform<2>> poses;
  const rzOCLineArrangement& arrangement = *results.arrangement();
  for (std::size_t l = 0; l < arrangement.lines().size(); ++l) {
    for (const rz2Rigid& pose : arrangement.lines()[l]->charPoses()) {
      poses.push_back(results.clientFromArrangementXform() * arrangement.linePoses()[l].linear() *
                      pose.linear());
    }
  }
  return poses;
}

void expectPoses(const rzOCArrangeResults& results, const std::vector<rzXform<2>>& expected) {
  const std::vector<rzXform<2>> poses = clientPoses(results);
  ASSERT_EQ(poses.size(), expected.size());
  for (std::size_t i = 0; i < poses.size(); ++i) {
    if (results.statusFlags()[i] == rzD::eUnknown) continue;
    EXPECT_NEAR(poses[i].trans().distance(expected[i].trans()), 0, kPels) << i;
    const rzDegree off = (poses[i].xRot() - expected[i].xRot()).signedNorm();
    EXPECT_NEAR(off.toDouble(), 0, kDegrees) << i;
  }
}

TEST(Arrange, ReadsTwoLinesAtAnyAngle) {
  for (const double degrees : {0.0, 35.0, 180.0, -100.0}) {
    const Print print("FRKZZKR", degrees);
    const rzOCArrangeResults results = arrange(print.image, "FRKZZKR");
    EXPECT_TRUE(results.isFound());
    EXPECT_FALSE(results.isSearchTruncated());
    EXPECT_THAT(results.statusFlags(), Each(rzD::eMatched));
    EXPECT_THAT(results.scores(), Each(Gt(0.8)));
    EXPECT_EQ(results.arrangement()->numLines(), 2);
    expectPoses(results, print.poses);
  }
}

TEST(Arrange, TellsWhatItCannotSee) {
  const Print print("F.KZ");
  const rzOCArrangeResults results = arrange(print.image, "FRKZ");
  EXPECT_TRUE(results.isFound());
  EXPECT_EQ(results.statusFlags()[0], rzD::eMatched);
  EXPECT_NE(results.statusFlags()[1], rzD::eMatched);
  EXPECT_EQ(results.scores()[1], 0);
  expectPoses(results, print.poses);
}

TEST(Arrange, EmptyPaperGivesUnknownPositions) {
  const Buffer paper = draw::paper(120, 60);
  rzOCArrangeParams params;
  for (const rzLong limit : {rzOCArrangeParams::kNoLimit, rzLong{0}}) {
    params.maxUnmatchedChars(limit);
    const rzOCArrangeResults results = arrange(paper, "FRK", params);
    EXPECT_TRUE(results.isFound());
    EXPECT_EQ(results.isSearchTruncated(), limit == 0) << "no path is allowed";
    EXPECT_THAT(results.statusFlags(), Each(rzD::eUnknown));
    EXPECT_EQ(results.arrangement()->numLines(), 3);
  }
}

TEST(Arrange, ArrangementOutlivesTheAlphabetAndTheResultsItCameFrom) {
  const Print print("FRKZ");
  rzOCArrangeResults results;
  {
    const rzOCAlphabet copy(letters());
    rfOCArrange(print.image, copy, keysOf("FRKZ"), {}, results);
  }
  // The only alphabet left is that of the results, which are about to be overwritten.
  const rzOCAlphabet& alphabet = *results.arrangement()->lines()[0]->alphabet();
  rfOCArrange(print.image, alphabet, keysOf("FRKZ"), {}, results);
  EXPECT_THAT(results.statusFlags(), Each(rzD::eMatched));
}

TEST(Arrange, OnlyCareRegionsOfTheMaskAreRead) {
  const Print print("FRKZ");
  Buffer mask(print.image.window(), 32);
  for (const bool isCared : {true, false}) {
    rfPelSet(mask, 255);
    Buffer right = mask;
    right.window(rzPelRect(144, 0, 76, 180), false);  // the Z
    rfPelSet(right, isCared ? 128 : 127);
    rzOCArrangeResults results;
    rfOCArrange(print.image, mask, letters(), keysOf("FRKZ"), {}, results);
    EXPECT_EQ(results.statusFlags()[0], rzD::eMatched);
    const double off = clientPoses(results)[3].trans().distance(print.poses[3].trans());
    EXPECT_EQ(results.statusFlags()[3] == rzD::eMatched && off < kPels, isCared);
  }
}

struct RefusalCase {
  const char* name;
  Image image;
  Image mask;
  bool hasMask;
  std::string text;
  rzLong number;  // of the failure
};

class ArrangeRefusal : public testing::TestWithParam<RefusalCase> {};

TEST_P(ArrangeRefusal, LeavesTheResultsAlone) {
  const RefusalCase& c = GetParam();
  static const rzOCArrangeResults before = arrange(Print("FRKZ").image, "FRKZ");
  rzOCArrangeResults results = before;
  try {
    if (c.hasMask) {
      rfOCArrange(c.image, c.mask, letters(), keysOf(c.text), {}, results);
    } else {
      rfOCArrange(c.image, letters(), keysOf(c.text), {}, results);
    }
    ADD_FAILURE() << "accepted";
  } catch (const rzException& failure) {
    EXPECT_EQ(failure.errorNumber(), c.number) << failure.what();
  }
  EXPECT_EQ(results, before);
}

Buffer bufferAt(rzLong x, rzLong y, rzLong width, rzLong height) {
  return Buffer(rzPelRect(x, y, width, height), 32);
}
const rzLong kUnbound = rzPel::UnboundWindow().errorNumber();
const rzLong kBadMask = rzD::BadMask().errorNumber();
const rzLong kBadKey = rzOCDefs::BadKey().errorNumber();

INSTANTIATE_TEST_SUITE_P(
    Table, ArrangeRefusal,
    testing::Values(
        RefusalCase{"unbound_image", {}, {}, false, "FR", kUnbound},
        RefusalCase{"unbound_image_empty_text", {}, {}, false, "", kUnbound},
        RefusalCase{"unbound_mask", bufferAt(0, 0, 9, 9), {}, true, "FR", kUnbound},
        RefusalCase{"mask_size", bufferAt(0, 0, 9, 9), bufferAt(0, 0, 9, 8), true, "FR", kBadMask},
        RefusalCase{"mask_offset", bufferAt(0, 0, 9, 9), bufferAt(1, 0, 9, 9), true, "?", kBadMask},
        RefusalCase{"unknown_key", bufferAt(0, 0, 9, 9), {}, false, "F?", kBadKey}),
    [](const auto& test) { return std::string(test.param.name); });

std::vector<std::string> titles(const rzDiagObject& diag) {
  std::vector<std::string> found;
  for (rzLong i = 0; i < diag.numRecords(); ++i) {
    found.push_back(std::to_string(diag.diagRecord(i)->level()) + diag.diagRecord(i)->annotation());
  }
  return found;
}

TEST(Arrange, DetailsAreRecordedForLinearFramesOnly) {
  Buffer image = Print("FR").image;
  for (const bool isLinear : {true, false}) {
    if (!isLinear) {
      image.clientFromImageXformBase(
          rzPtrHandle_const<rz2XformBase>(new rz2XformRadial(rzVector<2>(110, 90), 1e-12)));
    }
    rzDiagObject diag;
    rzOCArrangeResults results;
    rfOCArrange(image, letters(), keysOf("FR"), {}, results, &diag, rzDiagDefs::eDetails);
    EXPECT_THAT(results.statusFlags(), Each(rzD::eMatched));
    EXPECT_EQ(diag.level(), 0);
    if (isLinear) {
      EXPECT_THAT(titles(diag), testing::IsSupersetOf({std::string("0OC Arranger: Intermediate"),
                                                       std::string("1Search for characters")}));
    } else {
      EXPECT_THAT(titles(diag), IsEmpty());
    }
  }
  rzOCArrangeResults results;
  EXPECT_NO_THROW(
      rfOCArrange(image, letters(), keysOf("F"), {}, results, nullptr, rzDiagDefs::eDetails));
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
#include "oc/alphabet_report.h"

#include <gmock/gmock.h>

#include "oc/oc/alphabet_kit.h"
#include "oc/oc/report_text.h"
#include "rz/diag.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// Each record as "level title [picture] (labels of texts) (labels of graphics)".
std::vector<std::string> outline(const rzDiagObject& diag) {
  std::vector<std::string> lines;
  for (rzLong i = 0; i < diag.numRecords(); ++i) {
    const rzDiagRecord& record = *diag.diagRecord(i);
    std::string line = std::to_string(record.level()) + " " + record.annotation();
    if (!record.images().empty()) line += " [picture]";
    for (const rzDiagText& text : record.texts()) line += " (" + text.label + ")";
    for (const rzDiagGraphics& graphics : record.graphics()) {
      line += " <" + std::to_string(graphics.coordinateSystem) + " " + graphics.label + ">";
    }
    lines.push_back(line);
  }
  return lines;
}

template <class Graphic>
const Graphic& only(const rzDiagGraphics& graphics) {
  return dynamic_cast<const Graphic&>(*graphics.list.items().at(0));
}

// A window of 8 by 10 from (3, 4): grey 100, but 7 in the upper left corner and 250 in the lower
// right one; the area leaves out the first column.
const rzPelRect kWindow(3, 4, 8, 10);
const rzPelRect kArea(4, 4, 7, 10);

Image corneredImage() {
  rzPelBuffer<unsigned char> image(kWindow, 32);
  rfPelSet(image, 100);
  *image.pointToPel(3, 4) = 7;
  *image.pointToPel(10, 13) = 250;
  return image;
}

// Cares for all but two rows' worth of pels: 127 in row 4, 128 in row 5.
Image rowMask() {
  rzPelBuffer<unsigned char> mask(kWindow, 32);
  rfPelSet(mask, 255);
  for (rzLong x = 3; x < 11; ++x) {
    *mask.pointToPel(x, 4) = 127;
    *mask.pointToPel(x, 5) = 128;
  }
  return mask;
}

TEST(ConfusionMatrix, ShowsEveryOrderedPairAndListsThoseAboveTheThreshold) {
  const auto alphabet =
      compiledAlphabet({normalChar(1, "O"), normalChar(-2, "Q"), normalChar(3, "0")},
                       {{1.0, 0.75, 0.5}, {0.625, 1.0, 0.0}, {0.50001, 0.1234567, 1.0}});
  const std::string table =
      "Confusion matrix:\n"
      "\t'O'\t'Q'\t'0'\n"
      "'O'\t1.000\t0.750\t0.500\n"
      "'Q'\t0.625\t1.000\t0.000\n"
      "'0'\t0.500\t0.123\t1.000\n";
  EXPECT_EQ(rf_ConfusionMatrix(&*alphabet, false), table);
  EXPECT_EQ(rf_ConfusionMatrix(&*alphabet, true),
            table +
                "Confusing pairs:\n"
                "score 0.750 for ('O', 'Q') keys(0x00000001, 0xFFFFFFFE) at (0.000, 1.000)\n"
                "score 0.625 for ('Q', 'O') keys(0xFFFFFFFE, 0x00000001) at (1.000, 0.000)\n"
                "score 0.500 for ('0', 'O') keys(0x00000003, 0x00000001) at (2.000, 0.000)\n");
}

TEST(AlphabetReport, RecordsCharactersBelowTheAlphabetAndMasksBelowCharacters) {
  const rzOCAlphabet alphabet(
      Models{new rzOCModel(65, corneredImage(), rowMask(), kArea, rzOCModel::eNormal, "A", "tall"),
             blankChar(32, "space"),
             new rzOCModel(33, Image(), rowMask(), kArea, rzOCModel::eBlank, "gap")},
      0.25, false, "font");
  rzDiagObject diag;
  diag.level(2);
  const rzDiagRecord* record = rf_AddAlphabet(&diag, &alphabet, "Letters", true);
  const std::string frame = " <1 Image area> <2 Client coordinate axes>";
  EXPECT_THAT(outline(diag), ElementsAre("2 Letters (Alphabet general info)",
                                         "3 Character #0: 'A' [picture] (Character info)" + frame,
                                         "4 mask [picture]" + std::string(" (Mask info)") + frame,
                                         "3 Character #1: 'space' (Character info)" + frame,
                                         "3 Character #2: 'gap' (Character info)" + frame,
                                         "4 mask [picture]" + frame));
  EXPECT_EQ(diag.level(), 2);
  EXPECT_EQ(record, diag.diagRecord(0));
  EXPECT_EQ(record->texts()[0].content,
            "Alphabet general info\n  name = 'font'\n  numChars = 3\n"
            "  confusionThreshold = 0.250\n  isCompiled = false\n\n");
  EXPECT_EQ(diag.diagRecord(1)->texts()[0].content,
            "Character info\n  key = 0x00000041\n  name = 'A'\n  description = 'tall'\n"
            "  type = eNormal\n  imageArea = ul(4, 4) lr(11, 14) size(7, 10)\n"
            "  minPixelValue = 100\n  maxPixelValue = 250\n");
  EXPECT_EQ(diag.diagRecord(2)->texts()[0].content,
            "Mask info\n  nCarePixels = 63\n  nDontCarePixels = 7\n");
  EXPECT_THAT(diag.diagRecord(4)->texts()[0].content, HasSubstr("  type = eBlank\n"));
  EXPECT_THAT(diag.diagRecord(4)->texts()[0].content, Not(HasSubstr("PixelValue")));

  EXPECT_FALSE(diag.diagRecord(1)->images()[0].image.sharesRoot(alphabet.character(65)->image()));
  const auto& box = only<rzGraphicWithFill<rzRect, rzGenRect>>(diag.diagRecord(1)->graphics()[0]);
  EXPECT_EQ(box.shape(), rzRect(4, 4, 7, 10));
  EXPECT_EQ(box.color(), rzColor::greenColor());
  EXPECT_FALSE(box.isFilled());
}

TEST(AlphabetReport, CompiledAlphabetShowsItsTableInTheGeneralText) {
  const auto alphabet = compiledAlphabet({normalChar(1, "A")}, {{1.0}});
  rzDiagObject diag;
  const rzDiagRecord* record = rf_AddAlphabet(&diag, &*alphabet, "Letters", false);
  EXPECT_THAT(outline(diag), ElementsAre("0 Letters (Alphabet general info)"));
  EXPECT_THAT(record->texts()[0].content,
              EndsWith("  isCompiled = true\n" + rf_ConfusionMatrix(&*alphabet, true) + "\n"));
}

TEST(AlphabetReport, CompilationRecordsWhatIsAskedForAndComputesTheSame) {
  const Models models{new rzOCModel(65, corneredImage(), kArea, rzOCModel::eNormal, "A"),
                      blankChar(32, "space")};
  rzOCAlphabet plain(models);
  plain.compile();
  rzOCAlphabet watched(models);
  rzDiagObject diag;
  watched.compile(&diag, rzDiagDefs::eInputs | rzDiagDefs::eResults | rzDiagDefs::eDetails);
  const std::string frame = " <1 Image area> <2 Client coordinate axes>";
  EXPECT_THAT(outline(diag), ElementsAre("0 Alphabet Compilation Input (Alphabet general info)",
                                         "1 Character #0: 'A' [picture] (Character info)" + frame,
                                         "1 Character #1: 'space' (Character info)" + frame,
                                         "0 Alphabet Compilation Details",
                                         "0 Alphabet Compilation Results (Alphabet general info)"));
  EXPECT_THAT(diag.diagRecord(0)->texts()[0].content, HasSubstr("isCompiled = false"));
  EXPECT_THAT(diag.diagRecord(4)->texts()[0].content, HasSubstr("isCompiled = true"));
  EXPECT_EQ(rf_ConfusionMatrix(&watched, true), rf_ConfusionMatrix(&plain, true));

  rzDiagObject second;
  watched.compile(&second, rzDiagDefs::eInputs);
  EXPECT_THAT(second.diagRecord(0)->texts()[0].content, HasSubstr("isCompiled = true"));
}

}  // namespace

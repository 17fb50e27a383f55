// SPDX-License-Identifier: Apache-2.0
#include "text_marks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#include "char_list.h"
#include "failure.h"

namespace {

using glyphline::Mark;
using glyphline::marksOfText;
using testing::HasSubstr;
using Drawing = std::vector<std::string>;

constexpr rzLong kRim = 4;
constexpr unsigned char kPaper = 200;
constexpr unsigned char kInk = 40;

// A picture of the drawing, in which '#' is ink, with a rim of paper.
rzPelBuffer<unsigned char> pictureOf(const Drawing& drawing, bool isLight = false) {
  std::size_t width = 0;
  for (const std::string& row : drawing) width = std::max(width, row.size());
  rzPelBuffer<unsigned char> picture(rzPelRect(0, 0, static_cast<rzLong>(width) + 2 * kRim,
                                               static_cast<rzLong>(drawing.size()) + 2 * kRim),
                                     32);
  for (rzLong y = 0; y < picture.height(); ++y) {
    for (rzLong x = 0; x < picture.width(); ++x) {
      const auto row = static_cast<std::size_t>(y - kRim);
      const auto column = static_cast<std::size_t>(x - kRim);
      const bool isInk =
          row < drawing.size() && column < drawing[row].size() && drawing[row][column] == '#';
      *picture.pointToPel(x, y) = isInk != isLight ? kInk : kPaper;
    }
  }
  return picture;
}

std::vector<Mark> marksIn(const Drawing& drawing, const std::string& text, bool isLight = false) {
  const auto ink =
      glyphline::findInkPieces(pictureOf(drawing, isLight), glyphline::Polarity::kAuto);
  return marksOfText(ink, glyphline::codePointsOf(text, "text"), "print.png");
}

struct Row {
  const char* name;
  Drawing drawing;
  const char* text;
  std::string marks;  // "character:first column-last column" each, in the order of the text
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }

std::string told(const std::vector<Mark>& marks) {
  std::string text;
  for (const Mark& mark : marks) {
    if (!text.empty()) text += ' ';
    text += glyphline::utf8Of(mark.character) + ":" + std::to_string(mark.box.x() - kRim) + "-" +
            std::to_string(mark.box.ur().x() - 1 - kRim);
  }
  return text;
}

class TextMarks : public testing::TestWithParam<Row> {};

TEST_P(TextMarks, AreTheCharactersOfTheText) {
  const Row& row = GetParam();
  EXPECT_EQ(told(marksIn(row.drawing, row.text)), row.marks);
  EXPECT_EQ(told(marksIn(row.drawing, row.text, true)), row.marks);  // light on dark
}

const Drawing kTwoLines = {"####  ####",  //
                           "####  ####",  //
                           "####  ####",  //
                           "####  ####",  //
                           "          ",  //
                           "          ",  //
                           "   ####   ",  //
                           "   ####   ",  //
                           "   ####   ",  //
                           "   ####   "};

const Row kRows[] = {
    {"parts_above_each_other",
     {"##   #### ##",  //
      "     ####   ",  //
      "##   #### ##",  //
      "##   #### ##",  //
      "##   ####   ",  //
      "##   #### ##",  //
      "##   #### ##"},
     "iH:",
     "i:0-1 H:5-8 ::10-11"},
    {"parts_beside_each_other",
     {"###  # # ##   #  ",  //
      "###  # # ##   #  ",  //
      "###          #   ",  //
      "###          #   ",  //
      "###         #    ",  //
      "###        #   ##",  //
      "###        #   ##"},
     "H\"%",
     "H:0-2 \":5-7 %:9-16"},
    {"parts_beside_each_other_above_the_next_mark",
     {"###  # # ##  #",  //
      "###  # #    # ",  //
      "###        #  ",  //
      "###       #   ",  //
      "###      #    ",  //
      "###     #  ## ",  //
      "###    #   ## "},
     "H\"%",
     "H:0-2 \":5-7 %:7-13"},
    {"full_stop_under_an_arm",
     {"#######  ####",  //
      "   #     ####",  //
      "   #     ####",  //
      "   #     ####",  //
      "   #     ####",  //
      "   #  ## ####",  //
      "   #  ## ####"},
     "T.H",
     "T:0-6 .:6-7 H:9-12"},
    {"dots",
     {"# # #   # # #   # # #",  //
      "                     ",  //
      "# # #   # # #   # # #",  //
      "                     ",  //
      "# # #   # # #   # # #",  //
      "                     ",  //
      "# # #   # # #   # # #"},
     "ABC",
     "A:0-4 B:8-12 C:16-20"},
    {"lines_of_the_text", kTwoLines, "A B\nC", "A:0-3 B:6-9 C:3-6"},
    {"lines_that_the_text_does_not_tell", kTwoLines, "A B C", "A:0-3 B:6-9 C:3-6"},
};

INSTANTIATE_TEST_SUITE_P(Prints, TextMarks, testing::ValuesIn(kRows),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(TextMarks, ThatDoNotFitAreRefusedWithTheirCounts) {
  const Drawing print = {"####  ####      ",  //
                         "####  ####      ",  //
                         "####  ####  ####",  //
                         "####  ####      ",  //
                         "####  ####      "};
  struct Case {
    const char* text;
    std::string told;
  };
  for (const Case& wrong : {
           Case{"AB", "3 marks for the 2 characters \"AB\""},
           Case{"ABCD", "3 marks for the 4 characters \"ABCD\"; the widest mark reaches from x 4"},
           Case{"ABC", "which they do not fit"},  // a dash is no letter
           Case{"-AB", "which they do not fit"},
           Case{"A\nB-", "1 line of marks for the 2 lines of the text"},
           Case{" \n", "no character but blanks"},
       }) {
    SCOPED_TRACE(wrong.text);
    try {
      marksIn(print, wrong.text);
      ADD_FAILURE() << "accepted";
    } catch (const glyphline::Failure& failure) {
      EXPECT_THAT(failure.what(), HasSubstr("print.png: --text: "));
      EXPECT_THAT(failure.what(), HasSubstr(wrong.told));
    }
  }
  EXPECT_EQ(told(marksIn(print, "AB-")), "A:0-3 B:6-9 -:12-15");
  // The dots of a colon are no two full stops, and no letter is as wide as a word.
  const Drawing colon = {"####    ", "####  ##", "####    ", "####  ##", "####  ##"};
  EXPECT_EQ(told(marksIn(colon, "A:")), "A:0-3 ::6-7");
  EXPECT_THROW(marksIn(colon, "A.."), glyphline::Failure);
  EXPECT_THROW(marksIn({"# # # # # # # # # # #", "# # # # # # # # # # #"}, "A"),
               glyphline::Failure);
  EXPECT_THROW(marksIn({"###  # # #", "# #  # # #", "###  # # #", "  #  # # #", "###  # # #"}, "9"),
               glyphline::Failure);
  EXPECT_THROW(marksIn({"    "}, "A"), glyphline::Failure);
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
#include "box_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "failure.h"

namespace {

using glyphline::Box;

std::vector<Box> parse(const std::string& text) {
  std::istringstream in(text);
  return glyphline::parseBoxes(in, "print.box", 100, 50);
}

TEST(BoxFile, CountsFromTheLowerLeftCornerOfThePicture) {
  const std::vector<Box> boxes = parse("A 10 5 20 25 0\n\nß 0 0 100 50 0\r\n");
  ASSERT_EQ(boxes.size(), 2u);
  EXPECT_EQ(boxes[0].character, U'A');
  EXPECT_EQ(boxes[0].rect, rzPelRect(10, 25, 10, 20));
  EXPECT_EQ(boxes[1].character, U'ß');
  EXPECT_EQ(boxes[1].rect, rzPelRect(0, 0, 100, 50));
}

TEST(BoxFile, NamesTheLineThatIsWrong) {
  struct Row {
    const char* line;
    const char* reason;
  };
  for (const Row& row :
       {Row{"A 1 2 3 4", "not a box"}, Row{"A 1 2 3 x 0", "not a box"},
        Row{"A 1 2 3 4 0 7", "not a box"}, Row{"AB 1 2 3 4 0", "not one character"},
        Row{"A 1 2 3 4 1", "page 0"}, Row{"A -1 2 3 4 0", "leaves the picture"},
        Row{"A 1 2 101 4 0", "leaves the picture"}, Row{"A 1 2 3 51 0", "leaves the picture"},
        Row{"A 3 2 3 4 0", "empty"}, Row{"A 1 4 3 4 0", "empty"},
        Row{"A 99999999999 2 3 4 0", "not a box"}, Row{"\xFF 1 2 3 4 0", "UTF-8"}}) {
    try {
      parse(std::string("B 1 1 2 2 0\n") + row.line);
      ADD_FAILURE() << row.line;
    } catch (const glyphline::Failure& failure) {
      EXPECT_THAT(failure.what(), testing::AllOf(testing::HasSubstr("print.box:2"),
                                                 testing::HasSubstr(row.reason)));
    }
  }
}

TEST(BoxFile, RefusesAFileWithoutBoxes) { EXPECT_THROW(parse("\n \n"), glyphline::Failure); }

}  // namespace

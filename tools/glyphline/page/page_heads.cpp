// SPDX-License-Identifier: Apache-2.0
#include "page/page_heads.h"

#include <filesystem>

#include "rz/text.h"

namespace glyphline {
namespace {

std::string fileName(const std::string& path) {
  return std::filesystem::path(path).filename().string();
}

std::string textOf(const ArrangeReport& report) {
  std::string text;
  for (const PositionReport& position : report.positions) text += position.character;
  return text;
}

std::string unmatchedOf(const ArrangeReport& report) {
  std::string text;
  for (const PositionReport& position : report.positions) {
    if (position.isBlank || position.status == rzOCArrangeDefs::eMatched) continue;
    text += (text.empty() ? "" : " ") + position.character;
  }
  return text;
}

}  // namespace

PageHead headOfArrangement(const ArrangeReport& report, const std::string& alphabetPath) {
  PageHead head;
  head.title = report.image == "-" ? "standard input" : fileName(report.image);
  head.passes = report.passes();
  head.facts = {
      {"Text", textOf(report)},
      {"Matched", std::to_string(report.matched) + " of " + std::to_string(report.expected)}};
  const std::string unmatched = unmatchedOf(report);
  if (!unmatched.empty()) head.facts.emplace_back("Not matched", unmatched);
  head.facts.emplace_back("Lines", std::to_string(report.lines.size()));
  head.facts.emplace_back("Alphabet", fileName(alphabetPath));
  head.facts.emplace_back("Time", rfDbl(report.milliseconds, 0, false) + " ms, recording included");
  if (report.isTruncated) head.facts.emplace_back("Search", "cut short by a limit");
  head.meanings = {{"green box", "character, found"},
                   {"orange box", "character, inferred"},
                   {"green line", "its direction"},
                   {"orange line", "inferred direction"},
                   {"blue line", "looks the same so"},
                   {"yellow point", "its origin"},
                   {"red line", "line as fitted"},
                   {"red arc", "line as fitted"},
                   {"yellow outline", "extent of a line"},
                   {"green outline", "image area"},
                   {"blue axes", "client axes"}};
  return head;
}

PageHead headOfAlphabet(const rzOCAlphabet& alphabet, const std::string& path) {
  PageHead head;
  head.title = alphabet.name().empty() ? fileName(path) : alphabet.name();
  if (!alphabet.name().empty()) head.facts.emplace_back("File", fileName(path));
  head.facts.insert(head.facts.end(),
                    {{"Characters", std::to_string(alphabet.numChars())},
                     {"Compiled", alphabet.isCompiled() ? "yes" : "no"},
                     {"Confusion threshold", rfStr(alphabet.confusionThreshold())}});
  head.meanings = {{"green outline", "image area"}, {"blue axes", "client axes"}};
  return head;
}

}  // namespace glyphline

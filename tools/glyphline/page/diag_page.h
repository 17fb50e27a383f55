// SPDX-License-Identifier: Apache-2.0
//
// A diagnostic record as one page of HTML that needs nothing but itself: the records as a tree,
// their pictures with the graphics over them, their texts. The page's own text, style and script
// are page.html, page.css and page.js beside this file; here the data is brought into the form that
// the script reads.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "rz/diag.h"

namespace glyphline {

/// What stands above the records.
struct PageHead {
  std::string title;
  std::optional<bool> passes;                                 // a verdict, for those that have one
  std::vector<std::pair<std::string, std::string>> facts;     // name and value
  std::vector<std::pair<std::string, std::string>> meanings;  // "green box", what it stands for
};

/// The whole page. A record without a picture of its own shows its graphics over the picture of the
/// record that it belongs to. Nothing of what is shown can become part of the page's own code.
std::string diagPage(const rzDiagObject& diag, const PageHead& head);

}  // namespace glyphline

// SPDX-License-Identifier: Apache-2.0
//
// The files that a page is made of, embedded at build time.
#pragma once

#include <string_view>

namespace glyphline {

extern const std::string_view kPageHtml;
extern const std::string_view kPageCss;
extern const std::string_view kPageJs;

}  // namespace glyphline

// SPDX-License-Identifier: Apache-2.0
//
// The source names that rzArchive::UnknownVersion carries beside the line of the check.
#pragma once

inline constexpr const char* kSourceOCChar = "oc/occhar";
inline constexpr const char* kSourceArrange = "oc/arrange";

// SPDX-License-Identifier: Apache-2.0
//
// What rfOCArrange found: for every position of the expected text whether it was matched, with
// what score, and where it lies.
//
//   for (std::size_t i = 0; i < results.statusFlags().size(); ++i)
//     if (results.statusFlags()[i] != rzOCArrangeDefs::eMatched) report(i);
//
// Statuses and scores are in the order of the expected text. The lines of the arrangement run
// through it in the same order, so position i is the i-th when the positions of all lines are
// counted through. The pose of a character in client coordinates of the image is
//
//   results.clientFromArrangementXform() * linePose.linear() * charPose.linear()
//
// without its scale, which stands apart in the line. A plain value; copies share the arrangement,
// which never changes.
#pragma once

#include <vector>

#include "oc/arrange_defs.h"
#include "oc/line_arrangement.h"
#include "rz/archive.h"
#include "rz/export.h"
#include "rz/pel_buffer.h"
#include "rz/ptr_handle.h"
#include "rz/types.h"
#include "rz/xform.h"

class rzDiagObject;
class rzOCAlphabet;
class rzOCArrangeParams;
class rzOCArrangeResults;

RZ_API void rfOCArrange_(const rzPelBuffer_const<unsigned char>& image,
                         const rzPelBuffer_const<unsigned char>& mask, const rzOCAlphabet& alphabet,
                         const std::vector<rzLong>& targetKeys, const rzOCArrangeParams& params,
                         rzOCArrangeResults& results, rzDiagObject* diag, rzULong flags);

class RZ_API rzOCArrangeResults {
 public:
  /// Nothing found: no arrangement, no positions.
  rzOCArrangeResults() = default;

  /// Whether the arranger ran to its end. It says nothing of how much of the text was read: see
  /// statusFlags().
  bool isFound() const { return isFound_; }

  /// Whether a limit cut the search short, so that the answer may be less than the best.
  bool isSearchTruncated() const { return isSearchTruncated_; }

  /// The lines; null until isFound().
  const rzPtrHandle_const<rzOCLineArrangement>& arrangement() const { return arrangement_; }

  /// From arrangement coordinates to the client coordinates of the image.
  const rzXform<2>& clientFromArrangementXform() const { return clientFromArrangementXform_; }

  /// One for each position of the text.
  const std::vector<rzOCArrangeDefs::CharStatus>& statusFlags() const { return statusFlags_; }

  /// One for each position of the text, 0 to 1, 1 being best. 0 unless the position was matched.
  const std::vector<double>& scores() const { return scores_; }

  /// Exactly equal, the arrangements by what they hold.
  bool operator==(const rzOCArrangeResults& other) const;
  bool operator!=(const rzOCArrangeResults& other) const { return !(*this == other); }

  /// Writes version 1, reads 0 and 1. Throws rzArchive::UnknownVersion; a failed load changes
  /// nothing.
  friend RZ_API rzArchive& operator||(rzArchive& archive, rzOCArrangeResults& results);

 private:
  friend RZ_API void rfOCArrange_(const rzPelBuffer_const<unsigned char>& image,
                                  const rzPelBuffer_const<unsigned char>& mask,
                                  const rzOCAlphabet& alphabet,
                                  const std::vector<rzLong>& targetKeys,
                                  const rzOCArrangeParams& params, rzOCArrangeResults& results,
                                  rzDiagObject* diag, rzULong flags);

  bool isFound_ = false;
  bool isSearchTruncated_ = false;
  rzPtrHandle_const<rzOCLineArrangement> arrangement_;
  rzXform<2> clientFromArrangementXform_;
  std::vector<rzOCArrangeDefs::CharStatus> statusFlags_;
  std::vector<double> scores_;
};

RZ_API rzArchive& operator||(rzArchive& archive, rzOCArrangeResults& results);

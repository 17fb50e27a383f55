// SPDX-License-Identifier: Apache-2.0
//
// What a character search found: for each distinct character of the text the places where it may
// stand, best first, each with a pose and a score. Nothing is decided here: one place in the image
// may be reported by several characters that look alike, and a character that is expected twice may
// be found five times.
//
// Poses go from the client coordinates of the character's image to the client coordinates of the
// searched image. Scores lie between 0 and 1, 1 being best. Times are milliseconds.
//
//   for (const rzPtrHandle<rz_OCExtractCharResult>& r : result.uniqueCharResults())
//     for (rzLong i = 0; i < r->numInstances(); ++i) use(r->pose(i), r->score(i));
//
// The objects have no locks; once a search has ended they are only read.
#pragma once

#include <map>
#include <vector>

#include "oc/extract_defs.h"
#include "rz/affine_rectangle.h"
#include "rz/export.h"
#include "rz/pel_rect.h"
#include "rz/ptr_handle.h"
#include "rz/rep_base.h"
#include "rz/types.h"
#include "rz/xform.h"

class rzCXAlignResult;
class rzDiagObject;

/// One found place of one character.
class RZ_API rz_OCExtractCharInstance {
 public:
  /// Score 0, identity pose, default rectangle.
  rz_OCExtractCharInstance() = default;

  /// Takes score and pose from `result`. `window` is the window of the pattern's training image and
  /// `clientFromImage` that image's client transform, linearised at the origin; with them the
  /// window is carried to the searched image.
  rz_OCExtractCharInstance(const rzCXAlignResult& result, const rzXform<2>& clientFromImage,
                           const rzPelRect& window);

  /// The strict order from the best score down.
  static bool orderByScore(const rz_OCExtractCharInstance& a, const rz_OCExtractCharInstance& b);

  /// Whether this instance sits on `other`: its centre or one of its corners lies within
  /// `tolerance` of the centre of `other`. The tolerance is a length in sides of `other`, so the
  /// answer can change when the two are exchanged.
  bool isEqual(const rz_OCExtractCharInstance& other, double tolerance) const;

  double score = 0.0;         ///< Score that the pattern finder gave, 0 to 1.
  rzXform<2> pose;            ///< Training client coordinates to client coordinates of the image.
  rzAffineRectangle affRect;  ///< The trained image window, carried to the image by the pose.
};

/// All that was found of one distinct character. Held by handle: positions of the text that show
/// the same character share one result.
class RZ_API rz_OCExtractCharResult : public virtual rzRepBase {
 public:
  rz_OCExtractCharResult();
  rz_OCExtractCharResult(const rz_OCExtractCharResult&) = default;
  rz_OCExtractCharResult& operator=(const rz_OCExtractCharResult&) = default;
  ~rz_OCExtractCharResult() override;

  /// Back to nothing found. The half-turn pose stays as it is.
  void init();

  /// Whether at least one instance was accepted.
  bool found() const { return found_; }
  void found(bool isFound) { found_ = isFound; }

  /// Milliseconds spent on this character.
  double time() const { return time_; }
  void time(double milliseconds) { time_ = milliseconds; }

  /// How often the character stands in the text.
  rzLong numOccurrences() const { return numOccurrences_; }
  void numOccurrences(rzLong count) { numOccurrences_ = count; }

  rzLong numInstances() const;

  /// How the character's pattern behaves when it is turned.
  rz_OCExtractDefs::Symmetry symmetry() const { return symmetry_; }

  /// The pose at which the pattern found itself in its own image turned by 180 degrees; the
  /// identity if it did not.
  const rzXform<2>& rot180Pose() const { return rot180Pose_; }

  /// Pose, score and carried window of instance `i`, counted from 0 and best first once the search
  /// has ended. Throws rz_OCExtractDefs::rz_OCExtractError, "Bad index", if there is no such
  /// instance.
  rzXform<2> pose(rzLong i) const;
  double score(rzLong i) const;
  rzAffineRectangle affRect(rzLong i) const;

 private:
  friend class rz_OCExtractModel;
  friend class rz_OCExtractStringResult;
  friend struct rz_OCExtractPeer;  // unit tests

  const rz_OCExtractCharInstance& instance_(rzLong i) const;
  void append_(const rz_OCExtractCharInstance& instance);
  void sortByScore_();
  void operator+=(const rz_OCExtractCharResult& other);
  bool doesOverlap_(rzLong i, rzLong j, double tolerance) const;
  void removeOverlapping_(rzLong i, double tolerance);

  bool found_ = false;
  double time_ = 0.0;
  std::vector<rz_OCExtractCharInstance> instances_;
  rz_OCExtractDefs::Symmetry symmetry_ = rz_OCExtractDefs::eNoSymmetry;
  rzXform<2> rot180Pose_;
  rzLong numOccurrences_ = 0;
};

/// The result of one search for the characters of a text. A plain value; copies share the results
/// of the single characters.
class RZ_API rz_OCExtractStringResult {
 public:
  rz_OCExtractStringResult();

  /// Back to an empty result.
  void init();

  /// Milliseconds spent searching the image.
  double searchTime() const { return searchTime_; }
  /// Milliseconds spent training the characters' patterns.
  double trainTime() const { return trainTime_; }

  /// One result for each distinct key, by ascending key. Never null, also where a character could
  /// not be searched.
  const std::vector<rzPtrHandle<rz_OCExtractCharResult>>& uniqueCharResults() const {
    return uniqueCharResults_;
  }
  /// One result for each position of the text, in the text's order.
  const std::vector<rzPtrHandle<rz_OCExtractCharResult>>& results() const { return results_; }

 private:
  friend class rz_OCExtractModel;
  friend struct rz_OCExtractPeer;  // unit tests

  void addToResult_(rzLong key, const rzPtrHandle<rz_OCExtractCharResult>& result);
  void deleteOverlappingCandidate_(rzPtrHandle<rz_OCExtractCharResult>& result, rzLong i,
                                   double tolerance, rzDiagObject* diag, rzULong flags);

  double searchTime_ = 0.0;
  double trainTime_ = 0.0;
  std::vector<rzPtrHandle<rz_OCExtractCharResult>> uniqueCharResults_;
  std::vector<rzPtrHandle<rz_OCExtractCharResult>> results_;
  std::map<rzLong, rzPtrHandle<rz_OCExtractCharResult>> characterResults_;
};

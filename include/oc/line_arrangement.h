// SPDX-License-Identifier: Apache-2.0
//
// A set of lines with a pose for each, and how uncertain those are: what the arranger gives back,
// or a layout that a caller describes. Arrangements share their lines, are not changed after
// construction, and give changed copies instead:
//
//     rzPtrHandle<rzOCLineArrangement> other = rfOCChangeCurrentKey(arrangement, 0, 3, newKey);
#pragma once

#include <string>
#include <vector>

#include "oc/line.h"
#include "rz/angle.h"
#include "rz/archive.h"
#include "rz/export.h"
#include "rz/persistent.h"
#include "rz/ptr_handle.h"
#include "rz/rect.h"
#include "rz/rep_base.h"
#include "rz/rigid.h"
#include "rz/types.h"
#include "rz/xform.h"

class RZ_API rzOCLineArrangement : public rzPersistent, public rzRepBase {
 public:
  /// No lines.
  rzOCLineArrangement();

  // The constructors below throw rzOCDefs::BadParams for an uncertainty that is not at least 0
  // and for vectors of unequal length.

  /// Evenly spaced: the first line's pose is the identity, each further one is `step` times the
  /// one before. The uncertainties hold for every line.
  rzOCLineArrangement(const std::vector<rzPtrHandle_const<rzOCLine>>& lines, const rz2Rigid& step,
                      double translationUncertainty = 0.0,
                      const rzRadian& rotationUncertainty = rzRadian(0.0),
                      const std::string& name = std::string());
  rzOCLineArrangement(const std::vector<rzPtrHandle<rzOCLine>>& lines, const rz2Rigid& step,
                      double translationUncertainty = 0.0,
                      const rzRadian& rotationUncertainty = rzRadian(0.0),
                      const std::string& name = std::string());

  /// One pose for each line. The uncertainties hold for every line.
  rzOCLineArrangement(const std::vector<rzPtrHandle_const<rzOCLine>>& lines,
                      const std::vector<rz2Rigid>& linePoses, double translationUncertainty = 0.0,
                      const rzRadian& rotationUncertainty = rzRadian(0.0),
                      const std::string& name = std::string());
  rzOCLineArrangement(const std::vector<rzPtrHandle<rzOCLine>>& lines,
                      const std::vector<rz2Rigid>& linePoses, double translationUncertainty = 0.0,
                      const rzRadian& rotationUncertainty = rzRadian(0.0),
                      const std::string& name = std::string());

  /// All told for each line.
  rzOCLineArrangement(const std::vector<rzPtrHandle_const<rzOCLine>>& lines,
                      const std::vector<rz2Rigid>& linePoses,
                      const std::vector<double>& translationUncertainties,
                      const std::vector<rzRadian>& rotationUncertainties,
                      const std::string& name = std::string());
  rzOCLineArrangement(const std::vector<rzPtrHandle<rzOCLine>>& lines,
                      const std::vector<rz2Rigid>& linePoses,
                      const std::vector<double>& translationUncertainties,
                      const std::vector<rzRadian>& rotationUncertainties,
                      const std::string& name = std::string());

  rzLong numLines() const;

  const std::vector<rzPtrHandle_const<rzOCLine>>& lines() const { return lines_; }
  /// From line coordinates to the client coordinates of the arrangement.
  const std::vector<rz2Rigid>& linePoses() const { return linePoses_; }
  const std::vector<double>& translationUncertainties() const { return translationUncertainties_; }
  const std::vector<rzRadian>& rotationUncertainties() const { return rotationUncertainties_; }
  const std::string& name() const { return name_; }

  /// As rzOCLine::encloseRect, over all lines, each with the uncertainties of its pose.
  rzRect encloseRect(const rzXform<2>& pose, const rzXform<2>& originXform,
                     const rzXform<2>& targetXform, double translationUncertainty,
                     const rzRadian& rotationUncertainty, double scaleUncertainty,
                     bool includeConfusable) const;

  /// Exactly equal, the lines by what they hold.
  bool operator==(const rzOCLineArrangement& other) const;
  bool operator!=(const rzOCLineArrangement& other) const { return !(*this == other); }

  static const rz_Instantiator sExemplar;

 protected:
  void dispatchSerialize(rzArchive& archive) override;

 private:
  static rzPersistent* make();
  void serialize_(rzArchive& archive, unsigned char version);
  void checkLoaded_() const;

  std::vector<rzPtrHandle_const<rzOCLine>> lines_;
  std::vector<rz2Rigid> linePoses_;
  std::vector<double> translationUncertainties_;
  std::vector<rzRadian> rotationUncertainties_;
  std::string name_;
};

// Copies of an arrangement in which one position holds something else. All other lines and the
// alphabet are shared with the source, which stays as it was. They throw rzOCDefs::BadParams for
// a line or position that does not exist, and rzOCDefs::BadKey for a key that is not possible at
// the position or when there is no key at all.

/// The position becomes a wild card.
RZ_API rzPtrHandle<rzOCLineArrangement> rfOCChangeCurrentKey(const rzOCLineArrangement& arrangement,
                                                             rzLong lineIndex,
                                                             rzLong positionIndex);

/// The position holds that key.
RZ_API rzPtrHandle<rzOCLineArrangement> rfOCChangeCurrentKey(const rzOCLineArrangement& arrangement,
                                                             rzLong lineIndex, rzLong positionIndex,
                                                             rzLong key);

/// The position holds those keys, in that order; rzOCDefs::BadIndex for a key given twice.
RZ_API rzPtrHandle<rzOCLineArrangement> rfOCChangeCurrentKeys(
    const rzOCLineArrangement& arrangement, rzLong lineIndex, rzLong positionIndex,
    const std::vector<rzLong>& keys);

/// The position holds every character of that name, in the order of the alphabet.
RZ_API rzPtrHandle<rzOCLineArrangement> rfOCChangeCurrentKeys(
    const rzOCLineArrangement& arrangement, rzLong lineIndex, rzLong positionIndex,
    const std::string& name);

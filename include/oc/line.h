// SPDX-License-Identifier: Apache-2.0
//
// A row of character positions in reading order: for each a key set, a pose and a scale relative
// to the line, and how uncertain those are, all against one alphabet. The arranger gives lines
// back; a caller can also build them by hand to describe a layout:
//
//     rzOCLine line(keySets, alphabet, rz2Rigid(rzDegree(0), rzVector<2>(12, 0)));
//
// places the characters 12 units apart. A pose maps the client coordinates of a character's model
// to line coordinates. Lines are not changed after construction; see rfOCChangeCurrentKey for
// changed copies.
#pragma once

#include <string>
#include <vector>

#include "oc/alphabet.h"
#include "oc/key_set.h"
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

class RZ_API rzOCLine : public rzPersistent, public rzRepBase {
 public:
  /// No positions, against a new empty alphabet.
  rzOCLine();

  // The three constructors below throw rzOCDefs::BadParams for a null alphabet, vectors of unequal
  // length, a scale that is not above 0 or an uncertainty that is not at least 0, and
  // rzOCDefs::BadKey for a possible key that the alphabet lacks.

  /// Evenly spaced: the first pose is the identity, each further one is `step` times the one
  /// before. Scale and uncertainties hold for every position.
  rzOCLine(const std::vector<rzOCKeySet>& keySetSequence,
           const rzPtrHandle_const<rzOCAlphabet>& alphabet, const rz2Rigid& step,
           double charScale = 1.0, double translationUncertainty = 0.0,
           const rzRadian& rotationUncertainty = rzRadian(0.0), double scaleUncertainty = 0.0,
           const std::string& name = std::string());

  /// One pose for each position. Scale and uncertainties hold for every position.
  rzOCLine(const std::vector<rzOCKeySet>& keySetSequence,
           const rzPtrHandle_const<rzOCAlphabet>& alphabet, const std::vector<rz2Rigid>& charPoses,
           double charScale = 1.0, double positionUncertainty = 0.0,
           const rzRadian& angularUncertainty = rzRadian(0.0), double scaleUncertainty = 0.0,
           const std::string& name = std::string());

  /// All told for each position.
  rzOCLine(const std::vector<rzOCKeySet>& keySetSequence,
           const rzPtrHandle_const<rzOCAlphabet>& alphabet, const std::vector<rz2Rigid>& charPoses,
           const std::vector<double>& charScales,
           const std::vector<double>& translationUncertainties,
           const std::vector<rzRadian>& rotationUncertainties,
           const std::vector<double>& scaleUncertainties, const std::string& name = std::string());

  rzLong numPositions() const;

  const std::vector<rzOCKeySet>& keySetSequence() const { return keySetSequence_; }
  const rzPtrHandle_const<rzOCAlphabet>& alphabet() const { return alphabet_; }
  const std::vector<rz2Rigid>& charPoses() const { return charPoses_; }
  const std::vector<double>& charScales() const { return charScales_; }
  /// In line coordinates, either way.
  const std::vector<double>& translationUncertainties() const { return translationUncertainties_; }
  const std::vector<rzRadian>& rotationUncertainties() const { return rotationUncertainties_; }
  /// As a share of the scale: 0.1 stands for 10 percent either way.
  const std::vector<double>& scaleUncertainties() const { return scaleUncertainties_; }
  const std::string& name() const { return name_; }

  /// Whether any character may stand at the position. This and the next two throw
  /// rzOCDefs::BadIndex for a position out of range.
  bool isWildcard(rzLong position) const;

  /// The model of the first current key, and those of all current keys, in their order. A wild
  /// card: rzOCDefs::BadIndex. `character` throws rzOCDefs::BadParams where no key is current.
  const rzPtrHandle_const<rzOCModel>& character(rzLong position) const;
  std::vector<rzPtrHandle_const<rzOCModel>> characters(rzLong position) const;

  /// The number of positions, wild cards left out, of whose current characters at least one is
  /// not blank.
  rzLong numNormalChars() const;

  /// The rectangle of target space that the current characters can reach when the line is placed
  /// by `pose` (client from line coordinates), with its own uncertainties and, on top of them,
  /// those given here. With `includeConfusable` also what every character that passes for the
  /// current one could reach; this asks for a compiled alphabet (rzOCDefs::NotCompiled). Other
  /// arguments and failures as in rzOCModel::encloseRect. Without characters: the default
  /// rectangle.
  rzRect encloseRect(const rzXform<2>& pose, const rzXform<2>& originXform,
                     const rzXform<2>& targetXform, double translationUncertainty,
                     const rzRadian& rotationUncertainty, double scaleUncertainty,
                     bool includeConfusable) const;

  /// Exactly equal, the alphabets by what they hold.
  bool operator==(const rzOCLine& other) const;
  bool operator!=(const rzOCLine& other) const { return !(*this == other); }

  static const rz_Instantiator sExemplar;

 protected:
  void dispatchSerialize(rzArchive& archive) override;

 private:
  static rzPersistent* make();
  void serialize_(rzArchive& archive, unsigned char version);
  void checkLoaded_() const;
  void fill_(double charScale, double translationUncertainty, const rzRadian& rotationUncertainty,
             double scaleUncertainty);
  std::vector<rzLong> currentKeys_(rzLong position) const;

  std::vector<rzOCKeySet> keySetSequence_;
  rzPtrHandle_const<rzOCAlphabet> alphabet_;
  std::vector<rz2Rigid> charPoses_;
  std::vector<double> charScales_;
  std::vector<double> translationUncertainties_;
  std::vector<rzRadian> rotationUncertainties_;
  std::vector<double> scaleUncertainties_;
  std::string name_;
};

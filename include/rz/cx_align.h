// SPDX-License-Identifier: Apache-2.0
//
// The pattern finder: learns the outline of one small thing, such as a printed character, from an
// image, and finds it again in other images at unknown place, angle and size.
//
//   rzCXAlignPattern pattern;
//   pattern.train(characterImage, 3, nullptr, 0);
//   rzCXAlignRunParams params;
//   params.zoneEnable(3);
//   params.zone(rz_CXDefs::eAngle, -180.0, 180.0);
//   params.zone(rz_CXDefs::eScale, 0.9, 1.1);
//   rzCXAlignResultSet set;
//   pattern.run(image, params, set, nullptr, 0);
//   for (const rzCXAlignResult& result : set.results()) use(result.pose(), result.score());
//
// What counts is where edges run and which of their sides is dark, not how strong they are: light,
// contrast and things that stand beside the pattern hardly change a score.
//
// A pose maps client coordinates of the training image to client coordinates of the image that is
// searched, and is a similarity: turn, uniform scale, shift. Zones and nominal values speak of it.
// Scores lie between 0 and 1, 1 for a perfect instance. Without edges that belong together by
// chance, a score is close to the share of the pattern's outline that is there.
//
// A trained pattern may be run from several threads at once, each with run parameters of its own.
#pragma once

#include <memory>
#include <vector>

#include "rz/cx_defs.h"
#include "rz/export.h"
#include "rz/pel_buffer.h"
#include "rz/types.h"
#include "rz/xform.h"
#include "rz/xform_base.h"

class rzDiagObject;

/// What every search with a pattern is told.
class RZ_API rz_CXRunParams {
 public:
  rz_CXRunParams();
  rz_CXRunParams(const rz_CXRunParams&);
  rz_CXRunParams(rz_CXRunParams&&) noexcept;
  rz_CXRunParams& operator=(const rz_CXRunParams&);
  rz_CXRunParams& operator=(rz_CXRunParams&&) noexcept;
  virtual ~rz_CXRunParams();

  /// Results that score less are dropped. 0 to 1, 0.5 at first.
  double acceptThreshold() const { return acceptThreshold_; }
  void acceptThreshold(double score) { acceptThreshold_ = score; }

  /// Edges count whose height, as an ideal step, is at least this many grey levels. 10 at first.
  double contrastThreshold() const { return contrastThreshold_; }
  void contrastThreshold(double greyLevels) { contrastThreshold_ = greyLevels; }

  /// Bits of rz_CXDefs::DOF: what is searched through its zone. The rest is held at its nominal
  /// value, exactly. 0 at first.
  rzULong zoneEnable() const { return zoneEnable_; }
  void zoneEnable(rzULong dofs) { zoneEnable_ = dofs; }

  /// The range of a degree of freedom that is searched. Angles in degrees, at first the full turn:
  /// a range of 359 degrees or more is the full turn, a shorter one runs upwards from its start to
  /// its end and is taken modulo the turn. Scales from 0.05 to 20, at first 0.9 to 1.1; wider
  /// ranges are cut to that.
  double zoneStart(rz_CXDefs::DOF dof) const { return dofs_[index_(dof)].start; }
  double zoneEnd(rz_CXDefs::DOF dof) const { return dofs_[index_(dof)].end; }
  void zone(rz_CXDefs::DOF dof, double start, double end);

  /// The value at which a degree of freedom is held that is not searched. 0 degrees, 1.0 at first.
  double nominal(rz_CXDefs::DOF dof) const { return dofs_[index_(dof)].nominal; }
  void nominal(rz_CXDefs::DOF dof, double value) { dofs_[index_(dof)].nominal = value; }

  /// How much of the smaller of two results' pattern boxes may lie in the other's; beyond it they
  /// count as the same place, and the better one stays. 0 to 1, 0.5 at first.
  double xyOverlap() const { return xyOverlap_; }
  void xyOverlap(double share) { xyOverlap_ = share; }

  /// Most results to give. 1 at first.
  rzLong numToFind() const { return numToFind_; }
  void numToFind(rzLong count) { numToFind_ = count; }

  /// Whether the pattern is also found as its own negative. False at first.
  bool ignorePolarity() const { return ignorePolarity_; }
  void ignorePolarity(bool ignore) { ignorePolarity_ = ignore; }

 private:
  struct Dof {
    double start;
    double end;
    double nominal;
  };
  static int index_(rz_CXDefs::DOF dof) { return dof == rz_CXDefs::eScale ? 1 : 0; }

  double acceptThreshold_ = 0.5;
  double contrastThreshold_ = 10.0;
  double xyOverlap_ = 0.5;
  rzULong zoneEnable_ = 0;
  rzLong numToFind_ = 1;
  bool ignorePolarity_ = false;
  Dof dofs_[2] = {{-180.0, 180.0, 0.0}, {0.9, 1.1, 1.0}};
};

/// The parameters of rzCXAlignPattern::run.
///
/// One object serves all patterns that are searched in the same image: it keeps what the finder
/// derives from the image alone, so that only the first of several runs has to compute it. It
/// notices when the image has changed. Copies start without it. One object is not to be used by
/// two threads at once.
class RZ_API rzCXAlignRunParams : public rz_CXRunParams {
 public:
  rzCXAlignRunParams();
  rzCXAlignRunParams(const rzCXAlignRunParams&);
  rzCXAlignRunParams(rzCXAlignRunParams&&) noexcept;
  rzCXAlignRunParams& operator=(const rzCXAlignRunParams&);
  rzCXAlignRunParams& operator=(rzCXAlignRunParams&&) noexcept;
  ~rzCXAlignRunParams() override;

  /// eFine at first.
  rz_CXDefs::Algorithm algorithm() const { return algorithm_; }
  void algorithm(rz_CXDefs::Algorithm algorithm) { algorithm_ = algorithm; }

  /// Carried: edges beside the pattern never lower a score. False at first.
  bool scoreUsingClutter() const { return scoreUsingClutter_; }
  void scoreUsingClutter(bool use) { scoreUsingClutter_ = use; }

 private:
  friend class rzCXAlignPattern;
  class Cache;

  rz_CXDefs::Algorithm algorithm_ = rz_CXDefs::eFine;
  bool scoreUsingClutter_ = false;
  mutable std::shared_ptr<Cache> cache_;
};

/// One instance of a pattern.
class RZ_API rzCXAlignResult {
 public:
  /// Not accepted, score and coverage 0, identity pose.
  rzCXAlignResult() = default;
  rzCXAlignResult(const rzXform<2>& pose, double xScale, double score, double coverage,
                  bool accepted)
      : pose_(pose), xScale_(xScale), score_(score), coverage_(coverage), accepted_(accepted) {}

  /// Training client coordinates to client coordinates of the searched image.
  const rzXform<2>& pose() const { return pose_; }
  /// The scale of the pose; exactly the nominal one where the scale is not searched.
  double xScale() const { return xScale_; }
  /// 0 to 1, 1 for a perfect instance.
  double score() const { return score_; }
  /// The share of the pattern's outline for which the image has an edge, 0 to 1.
  double coverage() const { return coverage_; }
  /// The score reaches the accept threshold.
  bool accepted() const { return accepted_; }

 private:
  rzXform<2> pose_;
  double xScale_ = 1.0;
  double score_ = 0.0;
  double coverage_ = 0.0;
  bool accepted_ = false;
};

/// The accepted instances of one run, the best score first.
class RZ_API rzCXAlignResultSet {
 public:
  const std::vector<rzCXAlignResult>& results() const { return results_; }
  /// For those who fill a set.
  void results(std::vector<rzCXAlignResult> results) { results_ = std::move(results); }

 private:
  std::vector<rzCXAlignResult> results_;
};

/// A pattern: the outline of one thing.
class RZ_API rzCXAlignPattern {
 public:
  rzCXAlignPattern();
  rzCXAlignPattern(const rzCXAlignPattern&);
  rzCXAlignPattern(rzCXAlignPattern&&) noexcept;
  rzCXAlignPattern& operator=(const rzCXAlignPattern&);
  rzCXAlignPattern& operator=(rzCXAlignPattern&&) noexcept;
  ~rzCXAlignPattern();

  /// Whether training chooses the grains by itself. True at first.
  bool autoSelectGrainLimits() const { return autoSelectGrainLimits_; }
  void autoSelectGrainLimits(bool automatic) { autoSelectGrainLimits_ = automatic; }

  /// The grains at which edges are taken, where training does not choose them: factors by which
  /// the image is made smaller, 1 for its full resolution.
  float coarseGrainLimit() const { return coarseGrainLimit_; }
  float fineGrainLimit() const { return fineGrainLimit_; }
  void grainLimits(float coarse, float fine);

  /// Learns the outline of what the window of `image` shows. The thing needs some three pels of
  /// background around it. `algorithms` are bits of rz_CXDefs::Algorithm; 3 prepares for both.
  /// Keeps a copy of the window. Throws rz_CXDefs::Errors when there are too few edges,
  /// rzPel::UnboundWindow for an unbound image, rzTimeout::Expired when the work is stopped; then
  /// the pattern stays as it was.
  void train(const rzPelBuffer_const<unsigned char>& image, rzULong algorithms,
             rzDiagObject* diag = nullptr, rzULong flags = 0);

  bool isTrained() const { return trained_ != nullptr; }

  /// The copy of the window that was trained; unbound before training.
  rzPelBuffer_const<unsigned char> trainImage() const;
  /// Its transform; the identity before training.
  rzPtrHandle_const<rz2XformBase> trainClientFromImage() const;

  /// Finds the pattern in the window of `image` and puts the accepted results into `set`: the best
  /// score first, places that overlap cleared, `numToFind` at most. Throws rz_CXDefs::Errors
  /// before training; rzTimeout::InternalExpired or rzTimeout::Expired when a time limit has
  /// passed or a stop was requested, and `set` then holds what was finished;
  /// rz_CXDefs::InternalError, with an empty set, when the finder fails inside.
  void run(const rzPelBuffer_const<unsigned char>& image, const rzCXAlignRunParams& params,
           rzCXAlignResultSet& set, rzDiagObject* diag = nullptr, rzULong flags = 0) const;

  /// The same, and looks only where `mask` is 128 or more. The mask's window must have the size
  /// of the image's window, its upper left lies on that of the image; otherwise
  /// rzPel::BadWindow is thrown.
  void run(const rzPelBuffer_const<unsigned char>& image,
           const rzPelBuffer_const<unsigned char>& mask, const rzCXAlignRunParams& params,
           rzCXAlignResultSet& set, rzDiagObject* diag = nullptr, rzULong flags = 0) const;

 private:
  class Trained;

  bool autoSelectGrainLimits_ = true;
  float coarseGrainLimit_ = 1.0F;
  float fineGrainLimit_ = 1.0F;
  std::shared_ptr<const Trained> trained_;  // never changed once made, so copies share it
};

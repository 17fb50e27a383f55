// SPDX-License-Identifier: Apache-2.0
//
// Search by normalised correlation: a template slides over a picture, pel by pel, unturned and
// unscaled, and the places where it correlates best are given back with sub-pel precision.
//
// Positions follow the house convention: a pel covers [x, x+1), its centre is at x + 0.5.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/vision/correlation/care_pels.h"
#include "platform/vision/correlation/cross_sums.h"
#include "platform/vision/correlation/print_likeness.h"
#include "rz/diag.h"
#include "rz/exception.h"
#include "rz/pel_buffer.h"

class rzNrmSearchDefs {
 public:
  /// Carried with the parameters; there is one accuracy and one algorithm.
  enum Accuracy : rzLong { eFine = 4 };
  enum Algorithm : rzLong { eCorrelation = 8 };
  class Errors;
};

/// A template that cannot be searched for, since it shows nothing.
class rzNrmSearchDefs::Errors : public rzExceptionWithString {
 public:
  explicit Errors(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(Errors)
};

class rzNrmSearchTrainParams {
 public:
  rzNrmSearchDefs::Accuracy accuracy() const { return accuracy_; }
  void accuracy(rzNrmSearchDefs::Accuracy accuracy) { accuracy_ = accuracy; }
  rzULong algorithms() const { return algorithms_; }
  void algorithms(rzULong algorithms) { algorithms_ = algorithms; }

 private:
  rzNrmSearchDefs::Accuracy accuracy_ = rzNrmSearchDefs::eFine;
  rzULong algorithms_ = rzNrmSearchDefs::eCorrelation;
};

class rzNrmSearchRunParams {
 public:
  explicit rzNrmSearchRunParams(rzNrmSearchDefs::Algorithm algorithm) : algorithm_(algorithm) {}

  rzNrmSearchDefs::Algorithm algorithm() const { return algorithm_; }
  rzNrmSearchDefs::Accuracy accuracy() const { return accuracy_; }
  void accuracy(rzNrmSearchDefs::Accuracy accuracy) { accuracy_ = accuracy; }
  /// Smallest score that is found, 0 to 1.
  double accept() const { return accept_; }
  void accept(double accept) { accept_ = accept; }
  /// Below this score a place may be passed over early when a better one is known, 0 to 1.
  double confusion() const { return confusion_; }
  void confusion(double confusion) { confusion_ = confusion; }
  /// Two results whose templates share more than this part of their area are one, 0 to 1.
  double xyOverlap() const { return xyOverlap_; }
  void xyOverlap(double xyOverlap) { xyOverlap_ = xyOverlap; }
  /// Most results; negative for no limit.
  std::int16_t maxNumResults() const { return maxNumResults_; }
  void maxNumResults(std::int16_t maxNumResults) { maxNumResults_ = maxNumResults; }

 private:
  rzNrmSearchDefs::Algorithm algorithm_;
  rzNrmSearchDefs::Accuracy accuracy_ = rzNrmSearchDefs::eFine;
  double accept_ = 0.5;
  double confusion_ = 0.6;
  double xyOverlap_ = 0.5;
  std::int16_t maxNumResults_ = -1;
};

class rzNrmSearchResult {
 public:
  rzNrmSearchResult(double score, bool found, const rzVector<2>& location)
      : score_(score), found_(found), location_(location) {}

  double score() const { return score_; }
  bool found() const { return found_; }
  /// Where the client origin of the template lands, in client coordinates of the picture.
  const rzVector<2>& location() const { return location_; }

 private:
  double score_;
  bool found_;
  rzVector<2> location_;
};

class rzNrmSearchResultSet {
 public:
  /// Best score first.
  const std::vector<rzNrmSearchResult>& results() const { return results_; }

 private:
  friend class rzNrmSearchModel;
  std::vector<rzNrmSearchResult> results_;
};

class rzNrmSearchModel {
 public:
  /// Learns the window of `image`. Throws rzNrmSearchDefs::Errors when it is flat. `diag` and
  /// `flags` are not used.
  void train(const rzPelBuffer_const<unsigned char>& image, const rzNrmSearchTrainParams& params,
             rzDiagObject* diag, rzULong flags);

  /// Slides the template over the window of `image`, wholly inside; a larger template gives an
  /// empty set. `searchRect` restricts the template's place, in pel coordinates of `image`;
  /// (0, 0, 1, 1) means no restriction.
  ///
  /// With r the normalised correlation, the score is (r - 0.86) / 0.14 cut to 0 to 1; or, where
  /// that is more and r is 0.7 or more, what the likeness of the print (rz_PrintLikeness), 0.625 to
  /// 1, gives on a scale from 0 to 0.5. So 0.3 asks for r = 0.90 or a likeness of 0.85: unlike
  /// letters of one face commonly correlate to 0.6 to 0.8, the letter itself, worn, to 0.75 and
  /// more, and then it is the kind of the difference that tells them apart.
  void run(const rzPelBuffer_const<unsigned char>& image, const rzNrmSearchRunParams& params,
           const rzPelRect& searchRect, rzNrmSearchResultSet& set, rzDiagObject* diag,
           rzULong flags) const;

 private:
  friend class rz_NrmMatcher;

  // Some rows of the template. What is left under them bounds what they can still bring.
  struct Strip {
    rz_WidePels pels;
    rzLong y;
    rz_PairSums upToHere;  // n and a, this strip included
    double energyBelow;    // sum of squared differences from the mean
  };

  std::vector<Strip> strips_;
  rzPair<rzLong> size_;
  rzVector<2> origin_;  // pel place of the client origin, from the window's corner
  rz_PairSums own_;     // n, a and aa of the template; n is 0 before training
  rz_PrintLikeness likeness_;
};

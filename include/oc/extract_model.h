// SPDX-License-Identifier: Apache-2.0
//
// The character search: where in an image may the characters of a text stand? For each distinct
// character of the text a pattern is trained from its image in the alphabet, and the image is
// searched for it at every place, angle and scale asked for. The arranger is built on this; call it
// yourself to see what the search alone delivers, before any position has been decided.
//
//   rz_OCExtractModel model;
//   rz_OCExtractStringResult result;
//   bool isComplete = model.search(alphabet, keys, image, rzPelBuffer_const<unsigned char>(),
//                                  rz_OCExtractModelParams(), rz_OCExtractRunParams(), result,
//                                  nullptr, 0);
//
// Characters are searched one after the other, those with edges in many directions first. Once the
// larger half of them (three at least) agree on a scale, the others are searched at that scale
// only. Each search makes its patterns anew; what they learn does not depend on the image.
//
// A model works on the caller's thread. Several models may search at once, one model may not.
#pragma once

#include <memory>
#include <sstream>
#include <vector>

#include "oc/extract_defs.h"
#include "oc/extract_params.h"
#include "oc/extract_result.h"
#include "rz/export.h"
#include "rz/pel_buffer.h"
#include "rz/ptr_handle.h"
#include "rz/types.h"
#include "rz/xform.h"

class rzCXAlignPattern;
class rzDiagObject;
class rzOCAlphabet;
class rzOCModel;

class RZ_API rz_OCExtractModel {
 public:
  rz_OCExtractModel();
  ~rz_OCExtractModel();
  rz_OCExtractModel(const rz_OCExtractModel&) = delete;
  rz_OCExtractModel& operator=(const rz_OCExtractModel&) = delete;

  /// Drops the patterns and everything that was learned for the last text.
  void init();

  /// Number of distinct keys of the last text searched for.
  rzLong numModels() const;

  /// Looks in the window of `image` for every character of a text.
  ///
  /// `keys` is the text, one key for each position, repeats allowed. Each character is asked for
  /// two instances more than the text has of it. Only pels where `mask` is 128 or more are looked
  /// at; an unbound mask means all of them. `result` is emptied first.
  ///
  /// True if every character was searched to the end; false if a time limit or a fault of the
  /// pattern finder cut one short, in which case `result` holds what was found until then. A
  /// character that cannot be searched (see rfOCExtractObstacle) has a result without instances.
  ///
  /// With the bit 0x20000 in `flags` the results are recorded in `diag`, if it is not null, and
  /// with 0x10000 as well, the run parameters before them. Throws rzPel::UnboundWindow for an
  /// unbound image and rzPel::BadWindow for a mask of another size than the image, once there is a
  /// pattern to run, and rzTimeout::Expired when the work was stopped from outside.
  bool search(const rzPtrHandle_const<rzOCAlphabet>& alphabet, const std::vector<rzLong>& keys,
              const rzPelBuffer_const<unsigned char>& image,
              const rzPelBuffer_const<unsigned char>& mask,
              const rz_OCExtractModelParams& modelParams, const rz_OCExtractRunParams& runParams,
              rz_OCExtractStringResult& result, rzDiagObject* diag, rzULong flags);

 private:
  friend struct rz_OCExtractPeer;  // unit tests

  void train_(const rzPtrHandle_const<rzOCAlphabet>& alphabet, const std::vector<rzLong>& keys,
              rz_OCExtractStringResult& result, rzDiagObject* diag, rzULong flags);
  void computeModelSymmetries_(const rzPtrHandle_const<rzOCAlphabet>& alphabet, rzDiagObject* diag,
                               rzULong flags);
  bool searchContrix_(const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                      const rzPelBuffer_const<unsigned char>& image,
                      const rzPelBuffer_const<unsigned char>& mask,
                      const rz_OCExtractRunParams& runParams, rz_OCExtractStringResult& result,
                      rzDiagObject* diag, rzULong flags);
  void postProcessResults_(rz_OCExtractStringResult& result, const std::vector<rzLong>& keys,
                           const rz_OCExtractRunParams& runParams, rzDiagObject* diag,
                           rzULong flags);
  void verifyContrixResults_(const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                             const rzPelBuffer_const<unsigned char>& image,
                             rz_OCExtractStringResult& result, rzDiagObject* diag, rzULong flags);
  void drawTrainDiags_(const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                       const rzPelBuffer_const<unsigned char>& image,
                       const std::vector<rzLong>& keys, rzDiagObject* diag, rzULong flags);
  void drawRuntimeDiags_(const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                         const rzPelBuffer_const<unsigned char>& image,
                         const rz_OCExtractRunParams& runParams, rz_OCExtractStringResult& result,
                         rzDiagObject* diag, rzULong flags);

  // All but searchOrder_ are indexed by the model index, the place of a key in keys_.
  std::vector<rzLong> occurrences_;  // how often each key stands in the text
  rz_OCExtractModelParams params_;
  std::vector<std::unique_ptr<rzCXAlignPattern>> patterns_;  // null: not searchable
  std::vector<rz_OCExtractDefs::Symmetry> symmetries_;
  std::vector<rzLong> keys_;  // distinct, ascending
  std::vector<rzXform<2>> rot180Poses_;
  std::vector<rzLong> searchOrder_;  // model indices
  std::ostringstream diagText_;
};

/// Why a character gets no pattern, and so is never found by the search.
enum rz_OCExtractObstacle : rzLong {
  eNoObstacle = 0,        ///< It gets one.
  eBlankCharacter = 1,    ///< It shows nothing, by its type.
  eNoImage = 2,           ///< It has no image.
  eTooFewEdges = 3,       ///< Its image shows too few edges.
  eEdgesTooParallel = 4,  ///< More than half of its edges run in one direction.
  eTrainingFailed = 5,    ///< The pattern finder made no pattern of it.
  eImageTooLarge = 6,     ///< Turning or doubling it would exceed 32767 pels.
};

/// What keeps `character` from being searched with default parameters. Costs a training.
/// Throws rzException if the character's image area does not fit its image.
RZ_API rz_OCExtractObstacle rfOCExtractObstacle(const rzOCModel& character);

/// A short text for people, such as "too few edges"; empty for eNoObstacle.
RZ_API const char* rfOCExtractObstacleText(rz_OCExtractObstacle obstacle);

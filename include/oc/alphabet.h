// SPDX-License-Identifier: Apache-2.0
//
// The characters that one reading job can meet, and what compilation derives from them: for every
// ordered pair how far the first can pass for the second (the confusion, 0 to 1), and where it
// then lies (the offset). Whatever in the system speaks of a character by its key asks an alphabet.
//
//     rzPtrHandle<rzOCAlphabet> alphabet(new rzOCAlphabet(models));
//     alphabet->compile();
//     bool risky = alphabet->areConfusable(keyOf0, keyOfO);
//
// Keys are distinct. The place of a character in characters() is its index. Copies share the
// models, and have tables of their own. Concurrent reading is safe, changing while reading is not.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "oc/model.h"
#include "rz/archive.h"
#include "rz/export.h"
#include "rz/nm_matrix.h"
#include "rz/persistent.h"
#include "rz/ptr_handle.h"
#include "rz/rep_base.h"
#include "rz/types.h"
#include "rz/xform.h"

class rzDiagObject;

class RZ_API rzOCAlphabet : public rzPersistent, public rzRepBase {
 public:
  /// Without characters, named "", threshold 0.5. Having nothing to compile, it counts as compiled.
  rzOCAlphabet();

  /// Throws what the setters confusionThreshold() and characters() throw.
  explicit rzOCAlphabet(const std::vector<rzPtrHandle_const<rzOCModel>>& characters,
                        double confusionThreshold = 0.5, bool compile = false,
                        const std::string& name = std::string());
  explicit rzOCAlphabet(const std::vector<rzPtrHandle<rzOCModel>>& characters,
                        double confusionThreshold = 0.5, bool compile = false,
                        const std::string& name = std::string());

  rzOCAlphabet(const rzOCAlphabet& other);
  rzOCAlphabet& operator=(const rzOCAlphabet& other);
  ~rzOCAlphabet() override;

  const std::string& name() const { return name_; }
  void name(const std::string& name) { name_ = name; }

  rzLong numChars() const;

  /// The whole list. The setter refuses equal keys (rzOCDefs::SameKey) and null handles
  /// (rzBadPointer), leaves the alphabet not compiled, and compiles it at once on demand.
  const std::vector<rzPtrHandle_const<rzOCModel>>& characters() const { return characters_; }
  void characters(const std::vector<rzPtrHandle_const<rzOCModel>>& characters,
                  bool compile = false);
  void characters(const std::vector<rzPtrHandle<rzOCModel>>& characters, bool compile = false);

  /// The character of that key; rzOCDefs::BadKey if there is none.
  const rzPtrHandle_const<rzOCModel>& character(rzLong key) const;
  bool hasCharacter(rzLong key) const;
  /// Its index, or -1 if there is none.
  rzLong characterIndex(rzLong key) const;

  /// Append characters. Refuses a key that is already there or that comes twice
  /// (rzOCDefs::SameKey). The alphabet is then not compiled, unless `compile` asks for it.
  void add(const rzPtrHandle_const<rzOCModel>& character, bool compile = false);
  void add(const std::vector<rzPtrHandle_const<rzOCModel>>& characters, bool compile = false);
  void add(const std::vector<rzPtrHandle<rzOCModel>>& characters, bool compile = false);

  /// Take characters away. For each key in turn the last character takes the hole. A compiled
  /// alphabet stays compiled and keeps the values of the remaining pairs. Throws rzOCDefs::BadKey
  /// for an unknown key, rzOCDefs::SameKey for one given twice.
  void remove(rzLong key);
  void remove(const std::vector<rzLong>& keys);

  /// The confusion above which two characters count as confusable, 0 to 1 (default 0.5), else
  /// rzOCDefs::BadParams. It is read at each question, so the tables stay valid; for the same
  /// reason the flag of the second setter has no effect.
  double confusionThreshold() const { return confusionThreshold_; }
  void confusionThreshold(double threshold);
  void confusionThreshold(double threshold, bool compile);

  /// Whether confusion() and characterOffset() can answer.
  bool isCompiled() const { return compiled_; }

  /// Computes the tables unless they are valid. Records into `diagObject`, if there is one, what
  /// `diagFlags` selects.
  void compile(rzDiagObject* diagObject = nullptr, rzULong diagFlags = 0);

  /// How far character key1 can pass for character key2, and where it then lies: from the client
  /// coordinates of the first to those of the second. Throws rzOCDefs::NotCompiled, then
  /// rzOCDefs::BadKey if either character is missing.
  double confusion(rzLong key1, rzLong key2) const;
  rzXform<2> characterOffset(rzLong key1, rzLong key2) const;

  /// Whether the confusion exceeds the threshold; for a blank character key1, whether it exceeds 0.
  /// Throws rzOCDefs::BadKey for a missing key1 before all else, then what confusion() throws.
  bool areConfusable(rzLong key1, rzLong key2) const;

  /// Equal characters in equal order, equal names, thresholds and states; the tables do not count.
  bool operator==(const rzOCAlphabet& other) const;
  bool operator!=(const rzOCAlphabet& other) const { return !(*this == other); }

  static const rz_Instantiator sExemplar;

 protected:
  void dispatchSerialize(rzArchive& archive) override;

 private:
  static rzPersistent* make();
  void serialize_(rzArchive& archive, unsigned char version);
  void checkLoaded_() const;
  void checkPair_(rzLong key1, rzLong key2) const;
  void compileRow_(rzLong row);

  bool compiled_ = true;
  std::string name_;
  double confusionThreshold_ = 0.5;
  std::vector<rzPtrHandle_const<rzOCModel>> characters_;
  // Side max(1, number of characters) and n by n while compiled_; never null, else meaningless.
  std::unique_ptr<rzNMMatrix> confusionMatrix_;
  std::vector<std::vector<rzXform<2>>> characterOffsets_;
};

/// As operator==, but thresholds and the models' transforms may differ by epsilon.
RZ_API bool rfRealEq(const rzOCAlphabet& a, const rzOCAlphabet& b, double epsilon);

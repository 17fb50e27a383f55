// SPDX-License-Identifier: Apache-2.0
//
// rzDiagObject: an account of a run for a reader, filled by the library when it is handed in, in
// the form of records: pictures with texts and graphics, nested by levels. Recording never changes
// a result. Flags choose what is recorded.
//
//   rzDiagObject diag;
//   rfOCArrange(image, alphabet, keys, params, results, &diag,
//               rzDiagDefs::eInputs | rzDiagDefs::eResults);
//   for (rzLong i = 0; i < diag.numRecords(); ++i) show(*diag.diagRecord(i));
//
// An object and its records belong to one thread at a time.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "rz/export.h"
#include "rz/graphics.h"
#include "rz/pel_buffer.h"
#include "rz/types.h"

class rzDiagDefs {
 public:
  /// What to record, a set of bits.
  enum What : rzULong {
    eInputs = 0x10000,
    eResults = 0x20000,
    eDetails = 0x40000,  ///< Intermediate results.
  };
  /// The coordinates that graphics of a record are given in.
  enum CoordinateSystem : rzLong {
    ePelCoordinates = 1,     ///< Pel coordinates of the record's image.
    eClientCoordinates = 2,  ///< Client coordinates of the record's image.
  };
};

/// A text of a record. The content may hold NUL characters, they belong to it.
struct rzDiagText {
  std::string content;
  std::string label;
};

/// Graphics of a record.
struct rzDiagGraphics {
  rzGraphicList list;
  rzLong coordinateSystem;  ///< A rzDiagDefs::CoordinateSystem.
  std::string label;
};

/// A picture of a record.
struct rzDiagImage {
  rzPelBuffer_const<unsigned char> image;
  std::string name;
};

/// One entry of the account. What is added is kept as it is at that moment: a list of graphics
/// that grows later does not grow here.
class RZ_API rzDiagRecord {
 public:
  explicit rzDiagRecord(rzLong level) : level_(level) {}

  /// Nesting: a record belongs to the nearest one before it that has a lower level.
  rzLong level() const { return level_; }

  /// The title.
  void recordAnnotation(const std::string& annotation) { annotation_ = annotation; }
  const std::string& annotation() const { return annotation_; }

  void text(const std::string& content, const std::string& label);
  void graphics(const rzGraphicList& list, rzLong coordinateSystem, const std::string& label);
  /// With `copy` the record has pels of its own; without, it shares them, and shows what becomes
  /// of them. An image that is unbound, or whose window is empty, adds nothing.
  void image(const rzPelBuffer_const<unsigned char>& image, const std::string& name, bool copy);

  /// In the order in which they were added.
  const std::vector<rzDiagText>& texts() const { return texts_; }
  const std::vector<rzDiagGraphics>& graphics() const { return graphics_; }
  const std::vector<rzDiagImage>& images() const { return images_; }

 private:
  rzLong level_;
  std::string annotation_;
  std::vector<rzDiagText> texts_;
  std::vector<rzDiagGraphics> graphics_;
  std::vector<rzDiagImage> images_;
};

class RZ_API rzDiagObject {
 public:
  rzDiagObject() = default;
  rzDiagObject(const rzDiagObject&) = delete;
  rzDiagObject& operator=(const rzDiagObject&) = delete;

  /// All bits of `what` are set in `flags`.
  static bool shouldRecord(rzULong flags, rzULong what) { return (flags & what) == what; }

  /// The level that new records get; 0 at first. See rzDiagLevelScope.
  rzLong level() const { return level_; }
  void level(rzLong level) { level_ = level; }

  /// Adds an empty record at the present level. It stays where it is while this object lives.
  rzDiagRecord* newDiagRecord();
  rzLong numRecords() const { return rf_Count(records_.size()); }
  /// In the order of creation, from 0; null when there is no such record.
  rzDiagRecord* diagRecord(rzLong index);
  const rzDiagRecord* diagRecord(rzLong index) const;

 private:
  rzLong level_ = 0;
  std::vector<std::unique_ptr<rzDiagRecord>> records_;
};

/// Raises the level of an object while it lives, and puts back the level found on every way out.
/// A null object is allowed.
class RZ_API rzDiagLevelScope {
 public:
  explicit rzDiagLevelScope(rzDiagObject* diag, rzLong levels = 1);
  ~rzDiagLevelScope();
  rzDiagLevelScope(const rzDiagLevelScope&) = delete;
  rzDiagLevelScope& operator=(const rzDiagLevelScope&) = delete;

 private:
  rzDiagObject* diag_;
  rzLong before_;
};

/// Each adds a record with this title and one thing in it, and gives the record; null, and nothing
/// done, when `diag` is null. The picture of rf_AddImage is named like the record; an image that
/// is unbound, or whose window is empty, gives a record without picture.
RZ_API rzDiagRecord* rf_AddImage(rzDiagObject* diag, const rzPelBuffer_const<unsigned char>& image,
                                 const std::string& name, bool copy);
RZ_API rzDiagRecord* rf_AddText(rzDiagObject* diag, const std::string& text,
                                const std::string& title);
RZ_API rzDiagRecord* rf_AddGraphics(rzDiagObject* diag, const rzGraphicList& list,
                                    const std::string& title, rzLong coordinateSystem);

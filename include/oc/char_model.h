// SPDX-License-Identifier: Apache-2.0
//
// From character records to the models of an alphabet and back. A program that keeps rzOCChar
// records, perhaps because it exchanges them with C programs, makes the models that it searches
// with here:
//
//     rzOCAlphabet alphabet;
//     alphabet.add(rfOCModelFromChar(a, 65));
//     alphabet.add(rfOCModelFromChar(b, 66));
#pragma once

#include "oc/char.h"
#include "oc/model.h"
#include "rz/export.h"
#include "rz/ptr_handle.h"
#include "rz/types.h"

/// The model with this key, with the record's image, mask, image area, name and description. Pels
/// are shared, also those outside the window, and the client transform stays: its origin becomes
/// the model's.
///
/// A record whose metrics say that it is blank (rzOCCharMetrics::isBlank, as those of a fresh
/// record do) becomes a blank model without image and mask, and its area becomes the whole client
/// units that hold the record's. Otherwise a null area stands for the whole window of the image.
///
/// Throws what rzOCCharMetrics::isBlank, rzOCChar::name and the constructor of rzOCModel throw:
/// among others rzCharCodeDefs::NotRepresentable for a name without 8-bit form, rzOCDefs::BadImage
/// for a record that is neither blank nor has an image, rzOCDefs::BadParams when image, mask and
/// area do not fit each other.
RZ_API rzPtrHandle_const<rzOCModel> rfOCModelFromChar(const rzOCChar& character, rzLong key);

/// The record of a model: its key becomes the character code, and instance, variant and font are
/// not specified. The record has copies of the pels, those outside the window included; its metrics
/// say blank for a blank model and specify nothing for another. Making a model of the record with
/// the same key gives an equal model, but for the mask of a blank one.
RZ_API rzOCChar rfOCCharFromModel(const rzOCModel& model);

// SPDX-License-Identifier: Apache-2.0
//
// rfOCArrange: is this text in this picture, and where? The text is given as one flat sequence of
// keys of an alphabet, one for each position; spaces are positions too, as characters of type
// rzOCModel::eBlank. Where one printed line ends and the next begins is found out: every position
// gets a found character or none, lines are straight or circular, and the arrangement of least cost
// is taken (see rzOCArrangeParams for what costs).
//
//   rzOCArrangeResults results;
//   rfOCArrange(image, alphabet, keys, rzOCArrangeParams(), results);
//   bool isRead = std::ranges::count(results.statusFlags(), rzOCArrangeDefs::eMatched) == n;
//
// Poses are in the client coordinates of the image, angles grow from the x axis towards the y axis.
//
// Calls run on the caller's thread and share nothing: separate calls with separate results may run
// at once. A call can be stopped from outside (see rz/attention.h) and then throws
// rzTimeout::Expired.
#pragma once

#include <vector>

#include "oc/alphabet.h"
#include "oc/arrange_defs.h"
#include "oc/arrange_params.h"
#include "oc/arrange_results.h"
#include "rz/export.h"
#include "rz/pel_buffer.h"
#include "rz/types.h"

class rzDiagObject;

/// Finds the characters of `targetKeys` in the window of `image` and arranges them in lines.
///
/// `results` is filled; it holds a position for each key, also where nothing was found. Only the
/// images of the characters are used, so the alphabet need not be compiled. It is copied: later
/// changes do not reach the arrangement.
///
/// If `diag` is not null, `flags` selects what is recorded in it: 0x10000 inputs, 0x20000 results,
/// 0x40000 intermediate details (only if the image's client transform is linear).
///
/// Throws rzPel::UnboundWindow for an unbound image and rzOCDefs::BadKey for a key that the
/// alphabet lacks; `results` then stays as it was. Throws rzTimeout::Expired when the work was
/// stopped from outside.
RZ_API void rfOCArrange(const rzPelBuffer_const<unsigned char>& image, const rzOCAlphabet& alphabet,
                        const std::vector<rzLong>& targetKeys, const rzOCArrangeParams& params,
                        rzOCArrangeResults& results, rzDiagObject* diag = nullptr,
                        rzULong flags = 0);

/// The same, looking only at pels where `mask` is 128 or more. Throws rzPel::UnboundWindow for an
/// unbound mask and rzOCArrangeDefs::BadMask for one whose window is not that of the image;
/// `results` then stays as it was.
RZ_API void rfOCArrange(const rzPelBuffer_const<unsigned char>& image,
                        const rzPelBuffer_const<unsigned char>& mask, const rzOCAlphabet& alphabet,
                        const std::vector<rzLong>& targetKeys, const rzOCArrangeParams& params,
                        rzOCArrangeResults& results, rzDiagObject* diag = nullptr,
                        rzULong flags = 0);

/// Either of the two: an unbound mask means that there is none.
RZ_API void rfOCArrange_(const rzPelBuffer_const<unsigned char>& image,
                         const rzPelBuffer_const<unsigned char>& mask, const rzOCAlphabet& alphabet,
                         const std::vector<rzLong>& targetKeys, const rzOCArrangeParams& params,
                         rzOCArrangeResults& results, rzDiagObject* diag, rzULong flags);

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "rz/pel_buffer.h"
#include "rz/types.h"
#include "rz/xform.h"

class rzCXAlignPattern;
class rzDiagObject;

/// Whether a character's pattern finds itself in the character's own window turned by
/// `angleDegrees`, held at the angle that undoes the turn. `pose` becomes the place that it found,
/// also where the match is too poor to count; it is left alone if there is none.
bool rf_FindsItselfRotated(const rzPelBuffer_const<unsigned char>& image,
                           const rzCXAlignPattern& pattern, double angleDegrees, rzXform<2>& pose,
                           rzDiagObject* diag, rzULong flags);

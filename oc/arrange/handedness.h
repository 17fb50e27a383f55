// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "rz/pel_buffer.h"

/// Whether the client frame mirrors the image, judged at the centre of the image's window. Seen in
/// a mirrored frame, what runs clockwise in the image runs the other way.
bool rf_IsLeftHanded(const rzPelBuffer_const<unsigned char>& image);

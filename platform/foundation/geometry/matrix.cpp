// SPDX-License-Identifier: Apache-2.0
#include "rz/matrix.h"

#include "rz/math_error.h"

void rf_ThrowSingular(const char* what) { throw rzMathError::Singular(what); }

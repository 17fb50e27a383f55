// SPDX-License-Identifier: Apache-2.0
//
// All of the library's classes and functions: start with rzOCAlphabet (what can be printed),
// rfOCArrange (is this text in this picture?) and rzOCArrangeResults (what was found).
#pragma once

#include "oc/affine_transform.h"
#include "oc/alphabet.h"
#include "oc/alphabet_file.h"
#include "oc/arrange.h"
#include "oc/arrange_defs.h"
#include "oc/arrange_params.h"
#include "oc/arrange_results.h"
#include "oc/extract_defs.h"
#include "oc/extract_model.h"
#include "oc/extract_params.h"
#include "oc/extract_result.h"
#include "oc/key_set.h"
#include "oc/line.h"
#include "oc/line_arrangement.h"
#include "oc/model.h"
#include "oc/oc_defs.h"
#include "oc/pose.h"
#include "oc/refine_arrangement.h"
#include "rz/archive.h"
#include "rz/archive_file.h"
#include "rz/attention.h"
#include "rz/pel_buffer.h"
#include "rz/pel_functions.h"

// SPDX-License-Identifier: Apache-2.0
//
// RZ_API marks what the shared library exports; everything else stays hidden.
#pragma once

#define RZ_API __attribute__((visibility("default")))

// SPDX-License-Identifier: Apache-2.0
#include "rz/rep_base.h"

rzRepBase::~rzRepBase() = default;

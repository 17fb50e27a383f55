// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

class rzCXAlignResult;
class rzCXAlignResultSet;

/// The accepted results of a set, in its order; all of them if none is accepted.
void rf_SelectResults(const rzCXAlignResultSet& resultSet, std::vector<rzCXAlignResult>& list);

#pragma once

#include "BatchPlan.h"

/// Runs `dax copy` for each item that waits, several at once, until all are done or a signal has come. An item that was
/// still waiting then has failed.
/// @param processes  at most so many at once
/// @param done       is told of each item in their order, also of those that didn't wait
void VFRunCopies(std::vector<VDBatchItem>& items, int processes, const std::function<void(VDBatchItem&)>& done);

#pragma once

#include "daxlib/DaxApi.h"

class LQResultsTable;

/// From cycle arrays (`vdbase/VFCycArr.h`) to tables of results (`vdstore/LQResultsTable.h`): the setup gives a table the same
/// columns, the copy appends rows and can be called again for more. Handle and table stay the caller's. The result is 1 for
/// success. What was done before a failure stays.

/// Appends a column to the table for each of the cycle array's, with its title, units and keyword. A type that tables don't have
/// becomes a double. Nothing is reported here but what handle and table record.
/// @param cycleArray  a `VDCycArr`
DAX_API char VFDaxSetupMultiColumnFromCycleArray(void* cycleArray, LQResultsTable* table);

/// Writes rows behind those of the first data set of a channel. Each column of the table takes the values of the cycle array's
/// column of its keyword, which must be there (-327692) and of the same type (-327693); -327694 for a column of the table that
/// has none of the types of numbers. Columns that the table doesn't have aren't copied. After a failure the columns may hold
/// different numbers of the new rows.
/// @param count  rows, no more than the cycle array has; negative for all
DAX_API char VFDaxCopyCycArrDataToMultiColumn(void* cycleArray, int count, LQResultsTable* table, int channel);

#pragma once

#include "vdbase/VDBaseApi.h"

class VDCycArr;

/// Cycle arrays behind handles: tables in memory whose columns have a title, units, a keyword, a type and an array of values
/// each, all of the same length.
///
/// Every function takes the handle first and gives 1 for success and 0, recorded, for failure: `VDBaseError::CycArrHandle` for
/// a null handle or one that is no cycle array, `CycArrValue` for a column or a value that can't be, `CycArrMemory` when memory
/// is short. A failure changes nothing. Columns are indexes from 0. One thread uses a cycle array at a time.

/// What the elements of a column are.
enum VTCycArrColType : int {
    VTCycArrLong = 1,  ///< 32-bit whole numbers
    VTCycArrFloat = 2,
    VTCycArrByte = 3,   ///< 8-bit whole numbers
    VTCycArrShort = 4,  ///< 16-bit whole numbers
    VTCycArrHuge = 5,   ///< 64-bit whole numbers
    VTCycArrDouble = 6,
};

/// @name Life
/// @{
/// A new cycle array without columns and rows, with one reference. Null when memory is short.
VDBASE_API VDCycArr* VFCycArrCreate();
/// Gives the number of references after the call.
VDBASE_API int VFCycArrAddRef(VDCycArr* array);
/// Gives a reference back and ends the array with the last one.
VDBASE_API int VFCycArrRelease(VDCycArr* array);
/// @}

/// @name Columns
/// @{
VDBASE_API int VFCycArrGetNumCols(const VDCycArr* array, int* count);
/// Appends a column whose values are 0.
/// @param type  a `VTCycArrColType`
VDBASE_API int VFCycArrAppendCol(VDCycArr* array, int type, const char* title, const char* units, const char* keyword);
VDBASE_API int VFCycArrGetColType(const VDCycArr* array, int column, int* type);
/// The first column of this very keyword.
VDBASE_API int VFCycArrGetColFromKey(const VDCycArr* array, const char* keyword, int* column);
/// @param text    gets memory of `VFRealloc`, which is the caller's (`VDComStr`); a zero byte follows the text
/// @param length  in bytes
VDBASE_API int VFCycArrGetColTitle(const VDCycArr* array, int column, char** text, int* length);
VDBASE_API int VFCycArrGetColUnits(const VDCycArr* array, int column, char** text, int* length);
VDBASE_API int VFCycArrGetColKeyword(const VDCycArr* array, int column, char** text, int* length);
/// @}

/// @name Rows
/// @{
VDBASE_API int VFCycArrGetSize(const VDCycArr* array, int* rows);
/// Cuts all columns, or lengthens them with values of 0.
VDBASE_API int VFCycArrSetSize(VDCycArr* array, int rows);
/// The values of a column, valid until the size changes.
/// @param size  of a value in bytes
VDBASE_API int VFCycArrGetArrayPtr(VDCycArr* array, int column, void** values, int* size);
/// @}

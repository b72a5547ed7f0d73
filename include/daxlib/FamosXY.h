#pragma once

#include "daxlib/MultiColumnPlugin.h"

/// The pairs of Famos recordings as a multi-column access plug-in, known without any manifest. A channel is one component with an
/// x component of its own: one data set with the columns x and y. It reads only: what writes fails with -332683.

extern "C" {
DAX_API DaxMultiColumn::Create FamosXYCreate;  ///< -328013 for a class id that isn't known; case doesn't count
DAX_API DaxMultiColumn::Release FamosXYRelease;
DAX_API DaxMultiColumn::SetId FamosXYSetId;
DAX_API DaxMultiColumn::Open FamosXYOpen;
DAX_API DaxMultiColumn::Close FamosXYClose;
DAX_API DaxMultiColumn::GetLastError FamosXYGetLastError;
DAX_API DaxMultiColumn::Flush FamosXYFlush;
DAX_API DaxMultiColumn::GetCapability FamosXYGetCapability;
DAX_API DaxMultiColumn::GetValue FamosXYGetValue;
DAX_API DaxMultiColumn::PutValue FamosXYPutValue;
DAX_API DaxMultiColumn::GetDataF FamosXYGetDataF;
DAX_API DaxMultiColumn::PutDataF FamosXYPutDataF;
DAX_API DaxMultiColumn::GetDataElement FamosXYGetDataElement;
DAX_API DaxMultiColumn::PutDataElement FamosXYPutDataElement;
DAX_API DaxMultiColumn::AppendCol FamosXYAppendCol;
DAX_API DaxMultiColumn::AppendColWithStatus FamosXYAppendColWithStatus;
DAX_API DaxMultiColumn::AppendDataSet FamosXYAppendDataSet;
DAX_API DaxMultiColumn::SetProgressObject FamosXYSetProgressObject;
DAX_API DaxMultiColumn::GetStatusWordBitData FamosXYGetStatusWordBitData;
DAX_API DaxMultiColumn::GetStatusWordData FamosXYGetStatusWordData;
DAX_API DaxMultiColumn::PutStatusWordData FamosXYPutStatusWordData;
DAX_API DaxMultiColumn::GetDataValidData FamosXYGetDataValidData;
DAX_API DaxMultiColumn::GetData FamosXYGetData;
DAX_API DaxMultiColumn::PutData FamosXYPutData;
DAX_API DaxMultiColumn::LoadMetaData FamosXYLoadMetaData;
DAX_API DaxMultiColumn::AddLegacyMetaData FamosXYAddLegacyMetaData;
}

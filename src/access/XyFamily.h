#pragma once

#include "AccessFamily.h"

#include "daxlib/MultiColumnPlugin.h"

class VDAccessPlugins;

/// The entry points of a multi-column plug-in.
struct VDXYAccEntryPoints : VDAccessEntryPoints
{
    DaxMultiColumn::GetLastError* GetLastError = nullptr;
    DaxMultiColumn::GetValue* GetValue = nullptr;
    DaxMultiColumn::PutValue* PutValue = nullptr;
    DaxMultiColumn::GetDataF* GetDataF = nullptr;
    DaxMultiColumn::PutDataF* PutDataF = nullptr;
    DaxMultiColumn::GetDataElement* GetDataElement = nullptr;
    DaxMultiColumn::PutDataElement* PutDataElement = nullptr;
    DaxMultiColumn::AppendCol* AppendCol = nullptr;
    DaxMultiColumn::AppendColWithStatus* AppendColWithStatus = nullptr;
    DaxMultiColumn::AppendDataSet* AppendDataSet = nullptr;
    DaxMultiColumn::SetProgressObject* SetProgressObject = nullptr;
    DaxMultiColumn::GetStatusWordBitData* GetStatusWordBitData = nullptr;
    DaxMultiColumn::GetStatusWordData* GetStatusWordData = nullptr;
    DaxMultiColumn::PutStatusWordData* PutStatusWordData = nullptr;
    DaxMultiColumn::GetDataValidData* GetDataValidData = nullptr;
    DaxMultiColumn::GetData* GetData = nullptr;
    DaxMultiColumn::PutData* PutData = nullptr;
};

const VDAccessFamily& VFXyFamily();
VDAccessPlugins& VFXyPlugins();

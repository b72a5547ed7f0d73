#pragma once

class LQChannelMapper;
class VDString;

/// The values behind the exported functions of the same names, without their checks. They report what fails.

bool VFEvaluateMetaDataValue(LQChannelMapper& mapper, const VDString& expression, int channel, VDString* result, int* type);
bool VFEvaluateMetaDataDouble(LQChannelMapper& mapper, const VDString& expression, int channel, double* result);

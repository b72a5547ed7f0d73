#pragma once

class LQChannelMapper;
class VDFileId;

/// Writes the sets "InputTestInfo" of a mapper anew from the file id of its test.
bool VFAddInputTestInfo(LQChannelMapper& mapper, VDFileId* id);

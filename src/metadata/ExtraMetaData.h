#pragma once

class LQChannelMapper;
class VDFileId;

/// Lays the metadata of the site's and the test's XML files over a mapper.
/// @param skipDefinitions  leaves the site's file out
bool VFAddExtraMetaData(VDFileId* id, bool skipDefinitions, LQChannelMapper& mapper);

#pragma once

class VDFileIdArray;

/// Does for each entry what `FIDFixTestPlusChannels` does for an id. A folder is listed once, however many of its tests are
/// looked for.
/// @return false if a listing or a step of the search fails
bool VFFixTestsPlusChannels(VDFileIdArray& tests);

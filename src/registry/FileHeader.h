#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDIo.h"

/// What identification and the load of a channel list share: reports about a file, and the file's first bytes.

constexpr int VVHeaderSize = 512;

/// Records a report with the name of the id's test in a line behind it.
/// @param text   the message; empty for the catalogue text of the code
/// @return false always
bool VFReportForFile(int code, const char* routine, VDFileId* id, int chain, const VDString& text = {});

/// The file by which a test is judged: that of its first channel.
/// @return false, recorded, if it can't be had or is empty
bool VFGetFirstFilename(VDFileId* id, VDString* filename, const char* routine);

/// Opens the file and reads its first bytes; the position stays behind them.
/// @param header  room for `VVHeaderSize` bytes
/// @param size    bytes read, at least 1
/// @return false, recorded, if the file can't be read or is empty
bool VFReadFileHeader(VDFileId* id, VDIo& io, char* header, int* size, const char* routine);

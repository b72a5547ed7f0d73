#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDString.h"

/// The types of storage files that this library serves. The built-in storage plug-in knows them by their content and leaves
/// all else to whoever declares them.
namespace ResultsFormat {

/// Class id texts of the access plug-ins, as the manifest names them.
constexpr const char* TableClass = "5B1C4E0A-6F0D-4C58-9A53-1D2C7E8F4B90";
constexpr const char* SpectraClass = "0E9A7D34-1F62-4B85-A0C9-6D53F81B27E4";

/// Names of the data objects in the files.
constexpr const char* TableNode = "MultiColumn";
constexpr const char* SpectraNode = "ComplexFrequency";

struct Type
{
    int subId;
    const char* keyword;
    const char* extension;
    VTFileAccessType accessType;
    const char* accessClass;
    int description;  ///< text of the catalogue
    /// Fills the channel list of an id from the file. A failure is recorded and gives 0.
    int (*loadInfo)(VDFileId* id, const VDString& filename);
};

/// Null if it isn't one of this library's.
const Type* FindType(int fileId, int subId);

}  // namespace ResultsFormat

int ResultsLoadTableInfo(VDFileId* id, const VDString& filename);
int ResultsLoadSpectraInfo(VDFileId* id, const VDString& filename);

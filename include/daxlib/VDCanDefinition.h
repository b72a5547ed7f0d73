#pragma once

#include "daxlib/DaxApi.h"
#include "daxlib/VDCanFrameDefinition.h"

/// A CAN database in the DBC text format: its frames with their channels, in file order. Copies are deep.
///
/// The reader takes the line types `BU_`, `BO_`, `SG_`, `CM_`, `BA_`, `BA_DEF_DEF_`, `VAL_` and `SIG_VALTYPE_`, line by
/// line, and passes over everything else. Texts are taken as the bytes of the file, or, with the preference
/// `/FileFormats/DBC/DBCIsUtf8` (default false), turned from UTF-8 into the library's one-byte encoding; the preference is
/// read by the constructor.
class DAX_API VDCanDefinition
{
public:
    VDCanDefinition();
    virtual ~VDCanDefinition();
    VDCanDefinition(const VDCanDefinition& other);
    VDCanDefinition& operator=(const VDCanDefinition& other);

    /// Reads a database and adds its frames to those that are there. Frames without a channel are left out.
    /// @return false on a failure, which is recorded (-334381 to -334404 as their texts say). A failure that lies in a line
    /// is
    ///         followed by a second report, -334400, with the line number and the file. The frames read until then stay.
    bool ReadDatabase(const char* filename);
    void ClearFrames();

    int GetFrameDefinitionCount() const;
    /// A frame in file order, which stays the database's; null for an index out of range.
    VDCanFrameDefinition* GetFrameDefinition(int index) const;
    /// The first frame with this id; null, recorded (-334406), if there is none. The search takes time in proportion to the
    /// number of frames.
    VDCanFrameDefinition* GetFrameDefinitionForId(unsigned long id) const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

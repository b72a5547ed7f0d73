#pragma once

#include "FamosRecords.h"

#include <memory>

/// Reads what a file in the imc Famos format declares: groups, components, channel names, buffers and data blocks. A
/// recording of time-stamped bus frames (one group, with one component of number format 10) is scanned whole, and its
/// channels follow from its frames and from a CAN database, if one is given. Samples are not read.
class VDFamosUtil
{
public:
    VDFamosUtil();
    ~VDFamosUtil();
    VDFamosUtil(const VDFamosUtil&) = delete;
    VDFamosUtil& operator=(const VDFamosUtil&) = delete;

    /// Opens and reads a file, which must have the extension "dat" or "raw" in any case. What it declares stays until the
    /// next `Open`.
    /// @param dbcFile   a CAN database for time-stamped recordings; empty or "** NO NAME **" for none
    /// @param asItIs    the file is known by its content and may have any name; of a time-stamped recording that is cut off
    ///                  the blocks that are whole are taken
    /// @return false, recorded; the file is closed then
    bool Open(const VDString& filename, const VDString& dbcFile, bool asItIs = false);
    /// Closes the file if it is open, and empties its name.
    bool Close();

    /// The number of channel names of the file, or of channels that a time-stamped recording gives. False for a null
    /// pointer.
    bool GetChannelCount(unsigned long* count) const;

    bool IsTimeStamped() const;
    const VDFamosHeader& GetHeader() const;
    /// The frames of a time-stamped recording. They and what they point to stay this object's.
    VDCanFrameTypeList& GetFrameTypes() const;
    /// The channels of a time-stamped recording. Without a database every byte of every frame id is one: those are made up
    /// when they are asked for.
    std::size_t GetTimeStampChanCount() const;
    /// Empty for an index out of range.
    VDFamosTimeStampChan GetTimeStampChan(std::size_t index) const;

private:
    struct State;

    bool OpenFile(const VDString& filename, const VDString& dbcFile, bool asItIs);
    bool ParseFile();
    bool ParseKeys();
    bool DetermineTimeStampChannels();
    bool InitTimeStampRead();
    bool ScanFrames();
    void AddByteChannels();
    bool AddDatabaseChannels();
    void SortByTitle();

    std::unique_ptr<State> state_;
};

#pragma once

#include "vdarchive/Z4File.h"
#include "vdarchive/Z4FileHold.h"
#include "vdbase/VDStringArray.h"

class VDStorageOs;

/// Opens and closes storage files. It keeps no state, so that files in different threads have nothing to do with each other.
/// One thread at a time uses a file and what belongs to it. All failures are recorded.
///
/// A file has one writer at a time and any number of readers. A reader sees the version that was the last one committed when
/// it opened the file, whatever a writer does. Whatever happens to a writer, the file stays as of its last commit.
class VDARCHIVE_API Z4Manager
{
public:
    Z4Manager();
    /// @param os  stands in for the system; must outlive this object and its files
    explicit Z4Manager(VDStorageOs& os) : os_(os) {}

    /// @return null if it can't be opened, is damaged or, to be written, has another writer
    Z4File* OpenFile(const char* filename, bool writable);
    /// A new file. One of that name stays until the first commit takes its place; its owner, mode and access list are
    /// carried over as far as that is allowed. A file that comes up under the name meanwhile is never replaced: the commit
    /// then goes into a file beside it and fails with `VDArchiveError::FileMoved`, which says where. A link stays a link.
    /// @param info  null for the usual layout
    Z4File* CreateFile(const char* filename, const Z4FileInfo* info);
    /// Opens the file to be written, or makes it if it is not there.
    /// @param created  whether it was made; may be null
    Z4File* AdoptFile(const char* filename, const Z4FileInfo* info, bool* created);
    /// Ends a file. Its objects must have been closed; what one of them still holds is lost.
    /// @param save  false gives up a new file that nothing was committed to; true keeps it, empty
    bool CloseFile(Z4File* file, bool save);

    /// Keeps everybody from writing a file as long as the result lives, for who is about to put another in its place. It may
    /// hold anything; there need be none of this name.
    /// @return null if somebody writes it or it can't be opened to be written
    std::unique_ptr<Z4FileHold> HoldFile(const char* filename);

    /// Verifies everything that the last commit refers to, data records included.
    /// @param findings  one text for each thing that is wrong; emptied first
    /// @return whether the file is sound
    bool CheckFile(const char* filename, VDStringArray* findings);

private:
    VDStorageOs& os_;
};

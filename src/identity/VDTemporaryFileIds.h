#pragma once

#include <list>

class VDFileId;

/// The live file ids that share in a temporary test. No lock guards it: temporary ids are made, copied and destroyed on one
/// thread.
class VDTemporaryFileIds
{
public:
    VDTemporaryFileIds() = default;
    /// Traces an error if ids are left, for then their tests' files stay on disk.
    ~VDTemporaryFileIds();
    VDTemporaryFileIds(const VDTemporaryFileIds&) = delete;
    VDTemporaryFileIds& operator=(const VDTemporaryFileIds&) = delete;

    /// Where an id was entered, for taking it out again.
    using Place = std::list<VDFileId*>::iterator;
    Place Add(VDFileId* id) { return ids_.insert(ids_.end(), id); }
    void Remove(Place place) { ids_.erase(place); }
    /// The first id of this filename; null if there is none.
    const VDFileId* Find(const char* filename) const;

private:
    std::list<VDFileId*> ids_;
};

extern VDTemporaryFileIds VVAllTemporaryFileIds;

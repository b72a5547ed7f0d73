#pragma once

#include "vdarchive/Z4Manager.h"
#include "vdarchive/Z4Size.h"
#include "vdstore/LQFlexTimeSeries.h"
#include "vdstore/LQHistogram.h"
#include "vdstore/LQMetaDataHost.h"
#include "vdstore/LQMode.h"
#include "vdstore/LQResultsTable.h"
#include "vdstore/LQSpectra.h"
#include "vdstore/LQTimeSeries.h"

/// Makes, opens, saves and ends the data objects in storage files. It keeps no state of its own. Whatever fails gives null
/// or false and is recorded.
class VDSTORE_API LQDataManager
{
public:
    LQDataManager() = default;
    /// @param os  stands in for the system; must outlive this object and its files
    explicit LQDataManager(VDStorageOs& os) : files_(os) {}

    Z4Manager* GetFileManager() { return &files_; }

    /// An existing object; a time series of either kind.
    LQTimeSeries* OpenTimeSeries(Z4Storage* storage, const char* node);
    LQHistogram* OpenHistogram(Z4Storage* storage, const char* node);
    LQSpectra* OpenSpectra(Z4Storage* storage, const char* node);
    LQResultsTable* OpenResultsTable(Z4Storage* storage, const char* node);
    /// Open the object or make it.
    /// @param created     whether it was made; may be null
    /// @param recordSize  of new channels, one of `Z4Size`
    LQTimeSeries* AdoptTimeSeries(Z4Storage* storage, const char* node, bool* created, int recordSize);
    LQFlexTimeSeries* AdoptFlexTimeSeries(Z4Storage* storage, const char* node, bool* created, int recordSize);
    /// @param tuner  null for the usual layout
    LQHistogram* AdoptHistogram(Z4Storage* storage, const char* node, bool* created, const LQTuner* tuner);
    LQSpectra* AdoptSpectra(Z4Storage* storage, const char* node, bool* created, int recordSize);
    LQResultsTable* AdoptResultsTable(Z4Storage* storage, const char* node, bool* created, int recordSize);
    LQMetaDataHost* AdoptMetaDataHost(Z4Storage* storage, const char* node, bool* created);

    /// Commits the object: from then on it survives whatever happens. Nothing happens to an object of a file that is only
    /// read.
    bool Flush(LQObject* object);
    /// Ends the object, which is gone even if this fails.
    /// @param save  flushes it first; false drops what changed since the last flush
    bool Close(LQObject* object, bool save);

private:
    template <class Object>
    Object* Adopt(Z4Storage* storage, const char* node, LQObject::Kind kind, bool* created);

    Z4Manager files_;
};

/// The one data manager of the process. It may be used from any thread.
VDSTORE_API LQDataManager* LQGetDataManager();

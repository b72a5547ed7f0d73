#include "vdstore/LQDataManager.h"

#include "vdbase/VFError.h"
#include "vdstore/VDStoreErrorCodes.h"

namespace {

bool ReportNoObject(const char* node)
{
    VDString text;
    text.Format("The storage file has no data object \"%s\" of this kind", VDString(node).c_str());
    return VFErrorSet(VDStoreError::NoObject, text, "LQDataManager", 0) != 0;
}

/// The node of an object; null, recorded, if it can't be had or holds another kind of object.
Z4Node* AdoptNode(Z4Storage* storage, const char* name, LQObject::Kind kind, bool* created)
{
    Z4Node* const node = storage == nullptr ? nullptr : storage->AdoptNode(name, kind, created);
    const bool isOther = storage == nullptr || (node != nullptr && node->GetKind() != kind);
    if (isOther)
        ReportNoObject(name);
    return isOther ? nullptr : node;
}

/// Whether a node is there and can be read; records the failure.
bool FindNode(Z4Storage* storage, const char* name)
{
    if (storage != nullptr && storage->GetNode(name) != nullptr)
        return true;
    // A node that is there and can't be read has been reported already.
    bool isThere = false;
    for (int i = 0; storage != nullptr && i < storage->GetNodeCount(); ++i)
        isThere = isThere || storage->GetNodeName(i) == name;
    return isThere ? false : ReportNoObject(name);
}

}  // namespace

LQTimeSeries* LQDataManager::OpenTimeSeries(Z4Storage* storage, const char* node)
{
    return FindNode(storage, node) ? AdoptTimeSeries(storage, node, nullptr, Z4Size::Record32K) : nullptr;
}

LQHistogram* LQDataManager::OpenHistogram(Z4Storage* storage, const char* node)
{
    return FindNode(storage, node) ? AdoptHistogram(storage, node, nullptr, nullptr) : nullptr;
}

LQSpectra* LQDataManager::OpenSpectra(Z4Storage* storage, const char* node)
{
    return FindNode(storage, node) ? AdoptSpectra(storage, node, nullptr, Z4Size::Record32K) : nullptr;
}

LQResultsTable* LQDataManager::OpenResultsTable(Z4Storage* storage, const char* node)
{
    return FindNode(storage, node) ? AdoptResultsTable(storage, node, nullptr, Z4Size::Record32K) : nullptr;
}

template <class Object>
Object* LQDataManager::Adopt(Z4Storage* storage, const char* node, LQObject::Kind kind, bool* created)
{
    bool isNew = false;
    Z4Node* const adopted = AdoptNode(storage, node, kind, &isNew);
    if (created != nullptr)
        *created = isNew;
    std::unique_ptr<Object> object(new Object);
    return adopted != nullptr && object->Attach(storage->shared_from_this(), adopted, isNew) ? object.release() : nullptr;
}

LQTimeSeries* LQDataManager::AdoptTimeSeries(Z4Storage* storage, const char* node, bool* created, int recordSize)
{
    LQTimeSeries* const object = Adopt<LQTimeSeries>(storage, node, LQObject::KindTimeSeries, created);
    if (object != nullptr)
        object->recordSize_ = recordSize;
    return object;
}

LQFlexTimeSeries* LQDataManager::AdoptFlexTimeSeries(Z4Storage* storage, const char* node, bool* created, int recordSize)
{
    LQFlexTimeSeries* const object = Adopt<LQFlexTimeSeries>(storage, node, LQObject::KindTimeSeries, created);
    if (object != nullptr)
        object->recordSize_ = recordSize;
    return object;
}

LQHistogram* LQDataManager::AdoptHistogram(Z4Storage* storage, const char* node, bool* created, const LQTuner* tuner)
{
    LQHistogram* const object = Adopt<LQHistogram>(storage, node, LQObject::KindHistogram, created);
    if (object != nullptr && tuner != nullptr)
        object->recordSize_ = tuner->recordSize;
    return object;
}

LQSpectra* LQDataManager::AdoptSpectra(Z4Storage* storage, const char* node, bool* created, int recordSize)
{
    LQSpectra* const object = Adopt<LQSpectra>(storage, node, LQObject::KindSpectra, created);
    if (object == nullptr || object->Begin(recordSize))
        return object;
    Close(object, false);
    return nullptr;
}

LQResultsTable* LQDataManager::AdoptResultsTable(Z4Storage* storage, const char* node, bool* created, int recordSize)
{
    LQResultsTable* const object = Adopt<LQResultsTable>(storage, node, LQObject::KindResultsTable, created);
    if (object != nullptr)
        object->recordSize_ = recordSize;
    return object;
}

LQMetaDataHost* LQDataManager::AdoptMetaDataHost(Z4Storage* storage, const char* node, bool* created)
{
    return Adopt<LQMetaDataHost>(storage, node, LQObject::KindMetaData, created);
}

bool LQDataManager::Flush(LQObject* object)
{
    return object != nullptr && object->Save();
}

bool LQDataManager::Close(LQObject* object, bool save)
{
    const std::unique_ptr<LQObject> ended(object);
    if (object == nullptr)
        return false;
    const bool good = !save || object->Save();
    object->Detach(true);
    return good;
}

LQDataManager* LQGetDataManager()
{
    static LQDataManager manager;
    return &manager;
}

#include "daxlib/VDMetaDataReader.h"

#include "MetaDataGuard.h"

#include "daxlib/DaxHandle.h"

#include <array>
#include <type_traits>

namespace {

/// One access family, as far as reading metadata goes.
struct VDReaderFamily
{
    VTFileAccessType type;
    int openMode = 0;
    void* (*create)() = nullptr;
    int (*setId)(void* access, VDFileId* id) = nullptr;
    int (*open)(void* access, int mode) = nullptr;
    int (*getMetaData)(void* access, LQChannelMapper** mapper) = nullptr;
    int (*close)(void* access) = nullptr;
    int (*release)(void* access) = nullptr;
};

template <auto Create, auto SetId, auto Open, auto GetMetaData, auto Close, auto Release>
constexpr VDReaderFamily MakeFamily(VTFileAccessType type, int openMode)
{
    using Access = std::remove_pointer_t<decltype(Create())>;
    return {.type = type,
            .openMode = openMode,
            .create = []() -> void* { return Create(); },
            .setId = [](void* access, VDFileId* id) { return SetId(static_cast<Access*>(access), id, 0); },
            .open = [](void* access, int mode) { return Open(static_cast<Access*>(access), mode); },
            .getMetaData = [](void* access,
                              LQChannelMapper** mapper) { return GetMetaData(static_cast<Access*>(access), mapper); },
            .close = [](void* access) { return Close(static_cast<Access*>(access)); },
            .release = [](void* access) { return Release(static_cast<Access*>(access)); }};
}

constexpr std::array VVFamilies = {
    MakeFamily<TSAccCreate, TSAccSetId, TSAccOpen, TSAccGetMetaData, TSAccClose, TSAccRelease>(VTFileAccessTimeSeries,
                                                                                               VTTsAccOpenRead),
    MakeFamily<HFAccCreate, HFAccSetId, HFAccOpen, HFAccGetMetaData, HFAccClose, HFAccRelease>(VTFileAccessHistogram, 1),
    MakeFamily<XYAccCreate, XYAccSetId, XYAccOpen, XYAccGetMetaData, XYAccClose, XYAccRelease>(VTFileAccessMultiColumn,
                                                                                               VTXyAccOpenRead),
    MakeFamily<MetaAccCreate, MetaAccSetId, MetaAccOpen, MetaAccGetMetaData, MetaAccClose, MetaAccRelease>(VTFileAccessMetaData,
                                                                                                           1),
    MakeFamily<CFAccCreate, CFAccSetId, CFAccOpen, CFAccGetMetaData, CFAccClose, CFAccRelease>(VTFileAccessComplexFrequency, 1),
};

}  // namespace

/// An open test: a reference on its id, and the access object of its family.
class VDMetaDataReader::Test
{
public:
    Test() = default;
    Test(const Test&) = delete;
    Test& operator=(const Test&) = delete;
    ~Test()
    {
        if (access_ == nullptr)
            return;
        const VDErrorMute mute;
        if (isOpen_)
            family_->close(access_);
        family_->release(access_);
    }

    bool Open(VDFileId* id)
    {
        int type = VTFileAccessUnknown;
        VDString description;
        VDString classId;
        if (FIDGetAccessInfo(id, &type, &description, &classId) == 0 || FIDAddRef(id) == 0)
            return false;
        id_.Reset(id);
        for (const VDReaderFamily& family : VVFamilies)
            if (family.type == type)
                return OpenAccess(family);
        return false;
    }

    bool GetMetaData(LQChannelMapper** mapper) const { return family_->getMetaData(access_, mapper) != 0; }

private:
    bool OpenAccess(const VDReaderFamily& family)
    {
        family_ = &family;
        access_ = family.create();
        isOpen_ = access_ != nullptr && family.setId(access_, id_.Get()) != 0 && family.open(access_, family.openMode) != 0;
        return isOpen_;
    }

    VDFileIdHandle id_;
    const VDReaderFamily* family_ = nullptr;
    void* access_ = nullptr;
    bool isOpen_ = false;
};

VDMetaDataReader::VDMetaDataReader() : VDCompBase(DaxHandleId::MetaDataReader) {}

VDMetaDataReader::VDMetaDataReader(const VDMetaDataReader& other)
    : VDCompBase(DaxHandleId::MetaDataReader), test_(other.test_)
{
}

VDMetaDataReader& VDMetaDataReader::operator=(const VDMetaDataReader& other)
{
    test_ = other.test_;
    return *this;
}

VDMetaDataReader::~VDMetaDataReader()
{
    Release();
}

bool VDMetaDataReader::SetFileId(void* fileId)
{
    return test_ == nullptr && VFGuardMetaData([&] {
               auto test = std::make_shared<Test>();
               if (!test->Open(static_cast<VDFileId*>(fileId)))
                   return false;
               test_ = std::move(test);
               return true;
           });
}

bool VDMetaDataReader::GetMetaData(LQChannelMapper** mapper)
{
    if (mapper == nullptr)
        return false;
    *mapper = nullptr;
    return test_ != nullptr && test_->GetMetaData(mapper);
}

bool VDMetaDataReader::Release()
{
    test_.reset();
    return true;
}

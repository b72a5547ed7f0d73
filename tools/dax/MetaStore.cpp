#include "MetaStore.h"

#include "TestMetaData.h"
#include "ToolError.h"

#include "vdstore/LQChannelMapper.h"

namespace {

VDMetaStored VFStoreInFile(const VDInputTest& input, const VDMetaEdits& edits)
{
    int accessType = 0;
    VFCheck(FIDGetAccessInfo(input.GetId().Get(), &accessType, nullptr, nullptr));
    const std::unique_ptr<VDTestAccess> access = VFMakeTestAccess(accessType);
    VFCheck(access->SetId(input.GetId().Get(), false));
    VFCheck(access->Open(VTTestOpen::Update));
    LQChannelMapper* const mapper = &VFNeedMetaData(*access);
    VFDropInputInfo(*mapper);
    edits.Check(*mapper);
    const int count = edits.Apply(*mapper);
    VFCheck(access->Close());
    return {input.GetPath(), count};
}

VDVmdFileHandle VFOpenSidecar(const VDInputTest& input, bool toRead, LQChannelMapper** mapper)
{
    VDVmdFileHandle sidecar(VMDCreate());
    VFCheck(static_cast<bool>(sidecar));
    VFCheck(VMDAdoptTestVmd(sidecar.Get(), input.GetId().Get(), toRead));
    VFCheck(VMDGetMetaData(sidecar.Get(), mapper));
    return sidecar;
}

VDMetaStored VFStoreInSidecar(const VDInputTest& input, const VDMetaEdits& edits)
{
    VDString filename;
    VFCheck(VMDCreateFilenameFromFileId(input.GetId().Get(), &filename));
    LQChannelMapper* mapper = nullptr;
    {
        // A sidecar that is open for writing is made with its last reference, so that what can fail is tried before.
        const VDVmdFileHandle present = VFOpenSidecar(input, true, &mapper);
        edits.Check(*mapper);
    }
    VDVmdFileHandle sidecar = VFOpenSidecar(input, false, &mapper);
    const int count = edits.Apply(*mapper);
    VFCheck(VMDRelease(sidecar.Detach()));
    return {filename.Str(), count};
}

}  // namespace

VDMetaStored VFStoreMetaData(const VDInputTest& input, const VDMetaEdits& edits)
{
    return input.Access().KeepsMetaData() ? VFStoreInFile(input, edits) : VFStoreInSidecar(input, edits);
}

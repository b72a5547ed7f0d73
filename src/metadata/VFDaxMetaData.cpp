#include "daxlib/VFDaxMetaData.h"

#include "ExtraMetaData.h"
#include "InputTestInfo.h"
#include "MetaDataCopy.h"
#include "MetaDataGuard.h"
#include "MetaDataMerge.h"

#include "vdstore/LQChannelMapper.h"

// The exported functions of metadata copying: each checks its mappers and sets the options of the one implementation.

namespace {

bool CopyAll(LQChannelMapper* source, LQChannelMapper* target, const VDMetaDataCopyOptions& options,
             const char* routine = __builtin_FUNCTION())
{
    return source != nullptr && target != nullptr &&
           VFGuardMetaData([&] { return VFCopyMetaDataMapper(*source, *target, options); }, routine);
}

bool CopyOne(LQChannelMapper* source, int sourceIndex, LQChannelMapper* target, int targetIndex,
             const VDMetaDataCopyOptions& options, const char* routine = __builtin_FUNCTION())
{
    return source != nullptr && target != nullptr &&
           VFGuardMetaData([&] { return VFCopyMetaDataSlot(*source, sourceIndex, *target, targetIndex, options); }, routine);
}

}  // namespace

bool VFDaxCopyMetaData(LQChannelMapper* source, LQChannelMapper* target, VTMetaDataCopyMode mode)
{
    return CopyAll(source, target, {.mode = mode});
}

bool VFDaxCopyMetaDataOverwrite(LQChannelMapper* source, LQChannelMapper* target, VTMetaDataCopyMode mode, bool overwrite)
{
    return CopyAll(source, target, {.mode = mode, .overwrite = overwrite});
}

bool VFDaxCopyMetaDataOverwriteAttributes(LQChannelMapper* source, LQChannelMapper* target, VTMetaDataCopyMode mode,
                                          bool overwrite, bool attributes)
{
    return CopyAll(source, target, {.mode = mode, .overwrite = overwrite, .attributes = attributes});
}

bool VFDaxCopyMetaDataOverwriteAttributesTestInfo(LQChannelMapper* source, LQChannelMapper* target, VTMetaDataCopyMode mode,
                                                  bool overwrite, bool attributes, bool testInfo)
{
    return CopyAll(source, target, {.mode = mode, .overwrite = overwrite, .attributes = attributes, .testInfo = testInfo});
}

bool VFDaxCopySingleMetaData(LQChannelMapper* source, int sourceIndex, LQChannelMapper* target, int targetIndex,
                             VTMetaDataCopyMode mode)
{
    return CopyOne(source, sourceIndex, target, targetIndex, {.mode = mode});
}

bool VFDaxCopySingleMetaDataOverwrite(LQChannelMapper* source, int sourceIndex, LQChannelMapper* target, int targetIndex,
                                      VTMetaDataCopyMode mode, bool overwrite)
{
    return CopyOne(source, sourceIndex, target, targetIndex, {.mode = mode, .overwrite = overwrite});
}

bool VFDaxCopySingleMetaDataOverwriteAttributes(LQChannelMapper* source, int sourceIndex, LQChannelMapper* target,
                                                int targetIndex, VTMetaDataCopyMode mode, bool overwrite, bool attributes)
{
    return CopyOne(source, sourceIndex, target, targetIndex,
                   {.mode = mode, .overwrite = overwrite, .attributes = attributes});
}

bool VFDaxCopySingleMetaDataOverwriteAttributesTestInfo(LQChannelMapper* source, int sourceIndex, LQChannelMapper* target,
                                                        int targetIndex, VTMetaDataCopyMode mode, bool overwrite,
                                                        bool attributes, bool testInfo)
{
    return CopyOne(source, sourceIndex, target, targetIndex,
                   {.mode = mode, .overwrite = overwrite, .attributes = attributes, .testInfo = testInfo});
}

bool VFDaxCopySingleMetaDataOverwriteAttributesTestInfoSelectedSets(LQChannelMapper* source, int sourceIndex,
                                                                    LQChannelMapper* target, int targetIndex,
                                                                    VTMetaDataCopyMode mode, bool overwrite, bool attributes,
                                                                    bool testInfo, VDStringArray sets)
{
    return VFDaxCopySingleMetaDataOverwriteAttributesTestInfoSelectedSets2(
        source, sourceIndex, target, targetIndex, mode, overwrite, attributes, testInfo, false, std::move(sets));
}

bool VFDaxCopySingleMetaDataOverwriteAttributesTestInfoSelectedSets2(LQChannelMapper* source, int sourceIndex,
                                                                     LQChannelMapper* target, int targetIndex,
                                                                     VTMetaDataCopyMode mode, bool overwrite,
                                                                     bool attributes, bool testInfo, bool check,
                                                                     VDStringArray sets)
{
    const VDMetaDataCopyOptions options = {
        .mode = mode, .overwrite = overwrite, .attributes = attributes, .testInfo = testInfo, .check = check, .sets = &sets};
    const char* const routine = __func__;
    return source != nullptr && target != nullptr && VFGuardMetaData([&] {
               return VFCopyMetaDataSelectedSets(*source, sourceIndex, *target, targetIndex, options, routine);
           });
}

bool VFDaxMergeMetadata(LQChannelMapper* target, LQChannelMapper* source, bool overwrite)
{
    return target != nullptr && source != nullptr &&
           VFGuardMetaData([&] { return VFMergeMetaData(*target, *source, overwrite); });
}

LQChannelMapper* VFDaxCloneMapper(LQChannelMapper* source)
{
    return source == nullptr ? nullptr : VFGuardMetaData([&] { return VFCloneMapper(*source); }).release();
}

bool VFDaxAddInputTestInfo(LQChannelMapper* mapper, void* fileId)
{
    return mapper != nullptr && VFGuardMetaData([&] { return VFAddInputTestInfo(*mapper, static_cast<VDFileId*>(fileId)); });
}

bool VFDaxAddExtraMetadata(void* fileId, bool skipDefinitions, LQChannelMapper* mapper)
{
    return mapper != nullptr &&
           VFGuardMetaData([&] { return VFAddExtraMetaData(static_cast<VDFileId*>(fileId), skipDefinitions, *mapper); });
}

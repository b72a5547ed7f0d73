#include "CfFamily.h"

#include "VDAccessPlugins.h"
#include "VDCFAcc.h"
#include "frame/DaxErrorCodes.h"

namespace {

using Points = VDCFAccEntryPoints;

constexpr auto VVEntryPoints = VFEntryPointList<Points>(std::array{
    VFEntryPoint<Points, &Points::GetData>("GetData"),
    VFEntryPoint<Points, &Points::PutData>("PutData"),
    VFEntryPoint<Points, &Points::GetLineAxisData>("GetLineAxisData"),
    VFEntryPoint<Points, &Points::PutLineAxisData>("PutLineAxisData"),
    VFEntryPoint<Points, &Points::GetSpectrumAxisData>("GetSpectrumAxisData"),
    VFEntryPoint<Points, &Points::PutSpectrumAxisData>("PutSpectrumAxisData"),
    VFEntryPoint<Points, &Points::SetProgressObject>("SetProgressObject"),
});

const Points& VFPoints(const VDAccessEntryPoints& entryPoints)
{
    return static_cast<const Points&>(entryPoints);
}

int VFGetValue(const VDAccessEntryPoints& entryPoints, void* instance, const VDAccessSelector& at, int key, VDVariant* input,
               VDVariant* value)
{
    return VFPoints(entryPoints).GetValue(instance, at.channel, at.outer, at.inner, key, input, value);
}

int VFPutValue(const VDAccessEntryPoints& entryPoints, void* instance, const VDAccessSelector& at, int key, VDVariant* value)
{
    return VFPoints(entryPoints).PutValue(instance, at.channel, at.outer, at.inner, key, value);
}

int VFSetProgressObject(const VDAccessEntryPoints& entryPoints, void* instance, VDProgressObject* progress)
{
    return VFPoints(entryPoints).SetProgressObject(instance, progress);
}

constexpr VDAccessFamily VVFamily = {
    .section = "ComplexFrequencyFiles",
    .className = "VDCFAcc",
    .entryPointList = VVEntryPoints,
    .makeEntryPoints = VFMakeEntryPoints<Points>,
    .calls = {.getLastError = VDCallsByChannel<Points>::GetLastError,
              .getValue = VFGetValue,
              .putValue = VFPutValue,
              .setProgressObject = VFSetProgressObject},
    .capabilities = {.noSerialisation = DaxComplexFrequency::NoSerialisation,
                     .writable = DaxComplexFrequency::Writable,
                     .keepsMetaData = DaxComplexFrequency::KeepsMetaData,
                     .beforePut = DaxComplexFrequency::BeforePut},
    .actualChanNumberKey = DaxComplexFrequency::ActualChanNumber,
    .bufferSizeKey = DaxComplexFrequency::BufferSize,
    .chanTitle = {.key = DaxComplexFrequency::ChanTitle,
                  .capability = DaxComplexFrequency::ChannelTitles,
                  .notSupported = DaxError::NoChannelTitle,
                  .ofId = FIDGetChanTitle},
    .formatSpecific = {.key = DaxComplexFrequency::FormatSpecific, .needOpenFile = false, .takeInput = true},
    .metaData = {.mapperKey = DaxComplexFrequency::MetaDataMapper,
                 .forReading = VDReadMetaData::Extended,
                 .header = VDHeaderAttributes::Everywhere},
    .codes = {.pluginFailure = DaxError::PluginFunction,
              .unknownFailure = DaxError::UnknownAccessFailure,
              .notSupported = DaxError::CfNotSupported,
              .emptyChannelList = DaxError::EmptyChannelList},
    .steps = {.finishOpen = VFStep<&VDCFAcc::FinishOpen>, .addHeaderAttributes = VFStep<&VDCFAcc::AddHeaderAttributes>},
};

}  // namespace

const VDAccessFamily& VFCfFamily()
{
    return VVFamily;
}

VDAccessPlugins& VFCfPlugins()
{
    static VDAccessPlugins plugins(VVFamily);
    return plugins;
}

#include "XyFamily.h"

#include "VDAccessPlugins.h"
#include "VDXYAcc.h"
#include "frame/DaxErrorCodes.h"

namespace {

using Points = VDXYAccEntryPoints;

constexpr auto VVEntryPoints = VFEntryPointList<Points>(std::array{
    VFEntryPoint<Points, &Points::GetDataF>("GetDataF"),
    VFEntryPoint<Points, &Points::PutDataF>("PutDataF"),
    VFEntryPoint<Points, &Points::GetDataElement>("GetDataElement"),
    VFEntryPoint<Points, &Points::PutDataElement>("PutDataElement"),
    VFEntryPoint<Points, &Points::AppendCol>("AppendCol"),
    VFEntryPoint<Points, &Points::AppendColWithStatus>("AppendColWithStatus"),
    VFEntryPoint<Points, &Points::AppendDataSet>("AppendDataSet"),
    VFEntryPoint<Points, &Points::SetProgressObject>("SetProgressObject"),
    VFEntryPoint<Points, &Points::GetStatusWordBitData>("GetStatusWordBitData"),
    VFEntryPoint<Points, &Points::GetStatusWordData>("GetStatusWordData"),
    VFEntryPoint<Points, &Points::PutStatusWordData>("PutStatusWordData"),
    VFEntryPoint<Points, &Points::GetDataValidData>("GetDataValidData"),
    VFEntryPoint<Points, &Points::GetData>("GetData"),
    VFEntryPoint<Points, &Points::PutData>("PutData"),
});

const Points& Of(const VDAccessEntryPoints& entryPoints)
{
    return static_cast<const Points&>(entryPoints);
}

constexpr VDAccessFamily VVFamily = {
    .section = "XYPairedFiles",
    .className = "VDXYAcc",
    .entryPointList = VVEntryPoints,
    .makeEntryPoints = VFMakeEntryPoints<Points>,
    .calls = {.getLastError = VDCallsByChannel<Points>::GetLastError,
              .getValue = [](const VDAccessEntryPoints& entryPoints, void* instance, const VDAccessSelector& selector, int key,
                             VDVariant* input, VDVariant* value) {
                  return Of(entryPoints).GetValue(instance, selector.channel, selector.outer, selector.inner, key, input,
                                                  value);
              },
              .putValue = [](const VDAccessEntryPoints& entryPoints, void* instance, const VDAccessSelector& selector, int key,
                             VDVariant* value) {
                  return Of(entryPoints).PutValue(instance, selector.channel, selector.outer, selector.inner, key, value);
              },
              .setProgressObject = [](const VDAccessEntryPoints& entryPoints, void* instance, VDProgressObject* progress) {
                  return Of(entryPoints).SetProgressObject(instance, progress);
              }},
    .capabilities = {.noSerialisation = DaxMultiColumn::NoSerialisation,
                     .writable = DaxMultiColumn::Writable,
                     .keepsMetaData = DaxMultiColumn::KeepsMetaData},
    .actualChanNumberKey = DaxMultiColumn::ActualChanNumber,
    .bufferSizeKey = DaxMultiColumn::BufferSize,
    .chanTitle = {.key = DaxMultiColumn::ChanTitle,
                  .capability = DaxMultiColumn::ChannelTitles,
                  .notSupported = DaxError::NoChannelTitle,
                  .ofId = FIDGetChanTitle},
    .formatSpecific = {.key = DaxMultiColumn::FormatSpecific, .needOpenFile = false, .takeInput = true},
    .metaData = {.mapperKey = DaxMultiColumn::MetaDataMapper,
                 .forReading = VDReadMetaData::Extended,
                 .header = VDHeaderAttributes::Everywhere},
    .codes = {.pluginFailure = DaxError::PluginFunction,
              .unknownFailure = DaxError::UnknownAccessFailure,
              .notSupported = DaxError::XyNotSupported,
              .emptyChannelList = DaxError::EmptyChannelList},
    .steps = {.setChannelCount = VFStep<&VDXYAcc::SetChannelCount>,
              .finishOpen = VFStep<&VDXYAcc::FinishOpen>,
              .addHeaderAttributes = VFStep<&VDXYAcc::AddHeaderAttributes>},
    .openModesFromZero = true,
};

}  // namespace

const VDAccessFamily& VFXyFamily()
{
    return VVFamily;
}

VDAccessPlugins& VFXyPlugins()
{
    static VDAccessPlugins plugins(VVFamily);
    return plugins;
}

#include "MetaFamily.h"

#include "VDAccessPlugins.h"
#include "frame/DaxErrorCodes.h"

#include "daxlib/FID.h"

namespace {

using Points = VDMetaAccEntryPoints;

constexpr auto VVEntryPoints = VFEntryPointList<Points>(std::array<VDEntryPoint, 0>{});

constexpr VDAccessFamily VVFamily = {
    .section = "MetaDataFiles",
    .className = "VDMetaAcc",
    .entryPointList = VVEntryPoints,
    .makeEntryPoints = VFMakeEntryPoints<Points>,
    .calls = {.getLastError = VDCallsByChannel<Points>::GetLastError,
              .getValue = VDCallsByChannel<Points>::GetValue,
              .putValue = VDCallsByChannel<Points>::PutValue},
    .capabilities = {.noSerialisation = DaxMetaData::NoSerialisation, .keepsMetaData = DaxMetaData::KeepsMetaData},
    .actualChanNumberKey = DaxMetaData::ActualChanNumber,
    .chanTitle = {.key = DaxMetaData::ChanTitle,
                  .capability = DaxMetaData::ChannelTitles,
                  .notSupported = DaxError::NoChannelTitle,
                  .ofId = FIDGetChanTitle},
    .formatSpecific = {.key = DaxMetaData::FormatSpecific, .needOpenFile = true, .takeInput = false},
    .metaData = {.mapperKey = DaxMetaData::MetaDataMapper, .needTestInfo = false},
    .codes = {.pluginFailure = DaxError::HistPluginFailure,
              .unknownFailure = DaxError::HistUnknownFailure,
              .notSupported = DaxError::HistNotSupported},
    .knowsCountUnopened = true,
    .namesTestOnNotSupported = true,
    .loadFailureIsFatal = true,
};

}  // namespace

const VDAccessFamily& VFMetaFamily()
{
    return VVFamily;
}

VDAccessPlugins& VFMetaPlugins()
{
    static VDAccessPlugins plugins(VVFamily);
    return plugins;
}

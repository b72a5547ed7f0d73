#include "HistFamily.h"

#include "VDAccessPlugins.h"
#include "VDHistAcc.h"
#include "frame/DaxErrorCodes.h"

namespace {

using Points = VDHistAccEntryPoints;

constexpr auto VVEntryPoints = VFEntryPointList<Points>(std::array{
    VFEntryPoint<Points, &Points::GetHistogram>("GetHistogram"),
    VFEntryPoint<Points, &Points::PutHistogram>("PutHistogram"),
});

constexpr VDAccessFamily VVFamily = {
    .section = "HistogramFiles",
    .className = "VDHistAcc",
    .entryPointList = VVEntryPoints,
    .makeEntryPoints = VFMakeEntryPoints<Points>,
    .calls = {.getLastError = VDCallsByChannel<Points>::GetLastError,
              .getValue = VDCallsByChannel<Points>::GetValue,
              .putValue = VDCallsByChannel<Points>::PutValue},
    .capabilities = {.noSerialisation = DaxHistogram::NoSerialisation,
                     .writable = DaxHistogram::Writable,
                     .keepsMetaData = DaxHistogram::KeepsMetaData},
    .actualChanNumberKey = DaxHistogram::ActualChanNumber,
    .chanTitle = {.key = DaxHistogram::ChanTitle,
                  .capability = DaxHistogram::ChannelTitles,
                  .notSupported = DaxError::NoChannelTitle,
                  .ofId = FIDGetChanTitle},
    .formatSpecific = {.key = DaxHistogram::FormatSpecific, .needOpenFile = true, .takeInput = false},
    .metaData = {.mapperKey = DaxHistogram::MetaDataMapper,
                 .forReading = VDReadMetaData::Copied,
                 .header = VDHeaderAttributes::InSidecar},
    .offsets = {.useKey = DaxHistogram::UseOffset,
                .ownKey = DaxHistogram::ScheduleOffset,
                .ownSubId = 3,
                .useAlwaysTold = true},
    .codes = {.pluginFailure = DaxError::HistPluginFailure,
              .unknownFailure = DaxError::HistUnknownFailure,
              .notSupported = DaxError::HistNotSupported,
              .emptyChannelList = DaxError::HistEmptyChannelList},
    .steps = {.addHeaderAttributes = VFStep<&VDHistAcc::AddHeaderAttributes>},
    .knowsCountUnopened = true,
    .namesTestOnNotSupported = true,
};

}  // namespace

const VDAccessFamily& VFHistFamily()
{
    return VVFamily;
}

VDAccessPlugins& VFHistPlugins()
{
    static VDAccessPlugins plugins(VVFamily);
    return plugins;
}

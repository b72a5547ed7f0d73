#include "TsFamily.h"

#include "VDAccessPlugins.h"
#include "VDTsAcc.h"
#include "frame/DaxErrorCodes.h"

namespace {

using Points = VDTsAccEntryPoints;

constexpr auto VVEntryPoints = VFEntryPointList<Points>(
    std::array{
        VFEntryPoint<Points, &Points::GetData>("GetData"),
        VFEntryPoint<Points, &Points::PutData>("PutData"),
    },
    std::array{
        VFEntryPoint<Points, &Points::GetDataDoublePrecision>("GetDataDoublePrecision"),
        VFEntryPoint<Points, &Points::PutDataDoublePrecision>("PutDataDoublePrecision"),
        VFEntryPoint<Points, &Points::GetDataDigital32>("GetDataDigital32"),
        VFEntryPoint<Points, &Points::PutDataDigital32>("PutDataDigital32"),
        VFEntryPoint<Points, &Points::GetDataDigital64>("GetDataDigital64"),
        VFEntryPoint<Points, &Points::PutDataDigital64>("PutDataDigital64"),
    });

constexpr VDAccessFamily VVFamily = {
    .section = "TimeSeriesFiles",
    .className = "VDTsAcc",
    .entryPointList = VVEntryPoints,
    .makeEntryPoints = VFMakeEntryPoints<Points>,
    .calls = {.getLastError = [](const VDAccessEntryPoints& entryPoints, void* instance,
                                 VDString& text) { static_cast<const Points&>(entryPoints).GetLastError(instance, text); },
              .getValue = VDCallsByChannel<Points>::GetValue,
              .putValue = VDCallsByChannel<Points>::PutValue},
    .capabilities = {.noSerialisation = DaxTimeSeries::NoSerialisation,
                     .writable = DaxTimeSeries::Writable,
                     .keepsMetaData = DaxTimeSeries::KeepsMetaData},
    .actualChanNumberKey = DaxTimeSeries::ActualChanNumber,
    .bufferSizeKey = DaxTimeSeries::BufferSize,
    .chanTitle = {.key = DaxTimeSeries::ChanTitle,
                  .capability = DaxTimeSeries::ChannelTitles,
                  .notSupported = DaxError::NoChannelTitle,
                  .ofId = FIDGetChanTitle},
    .formatSpecific = {.key = DaxTimeSeries::FormatSpecific, .needOpenFile = true, .takeInput = false},
    .metaData = {.mapperKey = DaxTimeSeries::MetaDataMapper,
                 .timeStampKey = DaxTimeSeries::TimeStamp,
                 .forReading = VDReadMetaData::Copied,
                 .header = VDHeaderAttributes::InSidecar,
                 .headerWithOwnOffsets = true},
    .offsets = {.useKey = DaxTimeSeries::UseOffset,
                .ownKey = DaxTimeSeries::ScheduleOffset,
                .ownSubId = 1,
                .ownAreFloats = true},
    .codes = {.pluginFailure = DaxError::TsPluginFailure,
              .unknownFailure = DaxError::UnknownAccessFailure,
              .notSupported = DaxError::TsNotSupported,
              .emptyChannelList = DaxError::EmptyChannelList},
    .steps = {.setChannelCount = VFStep<&VDTsAcc::SetChannelCount>,
              .finishOpen = VFStep<&VDTsAcc::FinishOpen>,
              .flush = VFStep<&VDTsAcc::FlushStats>,
              .addHeaderAttributes = VFStep<&VDTsAcc::AddHeaderAttributes>},
    .openModesFromZero = true,
};

}  // namespace

const VDAccessFamily& VFTsFamily()
{
    return VVFamily;
}

VDAccessPlugins& VFTsPlugins()
{
    static VDAccessPlugins plugins(VVFamily);
    return plugins;
}

#include "TsFamily.h"

#include "VDAccessPlugins.h"
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
    .capabilities = {.noSerialisation = DaxTimeSeries::NoSerialisation,
                     .writable = DaxTimeSeries::Writable,
                     .keepsMetaData = DaxTimeSeries::KeepsMetaData,
                     .channelTitles = DaxTimeSeries::ChannelTitles},
    .keys = {.actualChanNumber = DaxTimeSeries::ActualChanNumber,
             .channelTitle = DaxTimeSeries::ChanTitle,
             .formatSpecific = DaxTimeSeries::FormatSpecific},
    .codes = {.pluginFailure = DaxError::TsPluginFailure,
              .unknownFailure = DaxError::UnknownAccessFailure,
              .notSupported = DaxError::TsNotSupported,
              .emptyChannelList = DaxError::EmptyChannelList},
    .namesTestOnNotSupported = false,
    .loadFailureIsFatal = false,
    .getLastError = [](const VDAccessEntryPoints& entryPoints, void* instance,
                       VDString& text) { static_cast<const Points&>(entryPoints).GetLastError(instance, text); },
    .getValue =
        [](const VDAccessEntryPoints& entryPoints, void* instance, long channel, int key, VDVariant* value) {
            return static_cast<const Points&>(entryPoints).GetValue(instance, channel, key, value);
        },
    .putValue =
        [](const VDAccessEntryPoints& entryPoints, void* instance, long channel, int key, VDVariant* value) {
            return static_cast<const Points&>(entryPoints).PutValue(instance, channel, key, value);
        },
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

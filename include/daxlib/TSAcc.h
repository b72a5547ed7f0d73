#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDArray.h"
#include "vdbase/VDVariant.h"

class LQChannelMapper;
class VDProgressObject;

/// Reading and writing the channels of a time-series test of any format.
///
/// The life of an access object: `TSAccCreate`, `TSAccSetId`, `TSAccOpen`, data, `TSAccClose`, `TSAccRelease`. Channels are
/// indexes into the channel list sorted by number; points count from 1. Data moves between the caller's buffer and the
/// format plug-in without a copy in between. "All" stands for `DaxChannel::All` where a function says that it takes it.
///
/// Errors of every function: -327993 "File is not yet open", -327995 "Channel index out of range", -328020 with the plug-in's
/// own text, -327690 "Unknown error in access plugin".

/// How `TSAccOpen` opens a test.
enum VTTsAccOpenMode : int {
    VTTsAccOpenRead = 0,
    VTTsAccOpenUpdate = 1,  ///< read and write an existing test
    VTTsAccOpenCreate = 2,
    VTTsAccOpenCreateNew = 3,
};

/// Statistics of a channel, by the ids that `TSAccGetStat` and `TSAccGetPointStat` take.
enum VTTsAccStat : int {
    VTTsAccStatMax = 1,
    VTTsAccStatMin = 2,
    VTTsAccStatMean = 3,
    VTTsAccStatSDev = 4,  ///< standard deviation of a sample: over the number of points less one
    VTTsAccStatRms = 5,
    VTTsAccStatPointOfMax = 101,
    VTTsAccStatPointOfMin = 102,
    VTTsAccStatPointOfAbs = 103,  ///< the largest absolute value
};

extern "C" {

/// @name Life
/// @{
/// A new object with one reference; null with -327681 when memory is short.
DAX_API VDTsAcc* TSAccCreate();
/// Closes the test if it is open.
DAX_API int TSAccRelease(VDTsAcc* acc);
/// Binds the object to a test, of which it keeps a copy, and to the format's plug-in.
/// @param create  non-zero for a test that is to be written anew
DAX_API int TSAccSetId(VDTsAcc* acc, VDFileId* id, char create);
/// @param mode  a `VTTsAccOpenMode` that agrees with `create`, else -328005 or -328017
DAX_API int TSAccOpen(VDTsAcc* acc, int mode);
/// A test that isn't open is no failure.
DAX_API int TSAccClose(VDTsAcc* acc);
DAX_API int TSAccFlush(VDTsAcc* acc);
/// Registers an access plug-in that isn't configured; a name that is there already is left alone.
DAX_API int TSAccAddPlugin(const char* name, const char* prefix, const char* library, const char* description);
/// @param capability  a `DaxTimeSeries::Capability`
DAX_API int TSAccGetCapability(VDTsAcc* acc, int capability, char* answer);
/// Block size in points that suits the format. Needs no open test.
DAX_API int TSAccGetBufferSize(VDTsAcc* acc, long* points);
/// @}

/// @name Channels
/// @{
/// 0 until the first `TSAccOpen`.
DAX_API int TSAccGetNumChans(VDTsAcc* acc, long* count);
/// The channel numbers, ascending.
DAX_API int TSAccGetChans(VDTsAcc* acc, VDArrayWithSort<long>* numbers);
/// -328010 for a number that isn't there.
DAX_API int TSAccGetChanIndex(VDTsAcc* acc, int number, int* index);
DAX_API int TSAccIsValidChan(VDTsAcc* acc, int number, char* valid);
/// The channel's number as the file has it.
DAX_API int TSAccGetActualChanNumber(VDTsAcc* acc, int index, long* number);
DAX_API int TSAccGetChanTitle(VDTsAcc* acc, int index, VDString* title);
/// -327691 if the format stores no titles.
DAX_API int TSAccSetChanTitle(VDTsAcc* acc, int index, const char* title);
/// @}

/// @name Header values
/// @{
DAX_API int TSAccGetNumPoints(VDTsAcc* acc, int index, std::int64_t* points);
DAX_API int TSAccGetNumPointsDoublePrecision(VDTsAcc* acc, int index, std::int64_t* points);
DAX_API int TSAccGetNumPointsDigital32(VDTsAcc* acc, int index, std::int64_t* points);
DAX_API int TSAccGetNumPointsDigital64(VDTsAcc* acc, int index, std::int64_t* points);
/// Points per x unit (Hz where x is in seconds).
DAX_API int TSAccGetSampleRate(VDTsAcc* acc, int index, double* rate);
/// x value of point 1.
DAX_API int TSAccGetBaseTime(VDTsAcc* acc, int index, double* time);
DAX_API int TSAccGetXTitle(VDTsAcc* acc, VDString* title);
DAX_API int TSAccGetXUnits(VDTsAcc* acc, VDString* units);
DAX_API int TSAccGetYTitle(VDTsAcc* acc, int index, VDString* title);
DAX_API int TSAccGetYUnits(VDTsAcc* acc, int index, VDString* units);
/// Longest texts that the file can hold, in bytes.
DAX_API int TSAccGetMaxXTitleLength(VDTsAcc* acc, long* length);
DAX_API int TSAccGetMaxXUnitsLength(VDTsAcc* acc, long* length);
DAX_API int TSAccGetMaxYTitleLength(VDTsAcc* acc, long* length);
DAX_API int TSAccGetMaxYUnitsLength(VDTsAcc* acc, long* length);

/// The setters take an index or all, and fail with -327998 where writing isn't possible.
/// @param rate  above 0, else -328011
DAX_API int TSAccSetSampleRate(VDTsAcc* acc, int index, double rate);
DAX_API int TSAccSetBaseTime(VDTsAcc* acc, int index, double time);
/// -327990 for a file of fixed length.
DAX_API int TSAccSetNumPoints(VDTsAcc* acc, int index, std::int64_t points);
DAX_API int TSAccSetXTitle(VDTsAcc* acc, const char* title);
DAX_API int TSAccSetXUnits(VDTsAcc* acc, const char* units);
DAX_API int TSAccSetYTitle(VDTsAcc* acc, int index, const char* title);
DAX_API int TSAccSetYUnits(VDTsAcc* acc, int index, const char* units);

/// Neither checks the point against the file.
DAX_API int TSAccPointToTime(VDTsAcc* acc, int index, std::int64_t point, double* time);
/// Rounds to the nearest point.
DAX_API int TSAccTimeToPoint(VDTsAcc* acc, int index, double time, std::int64_t* point);
/// @}

/// @name Reading
/// A request that passes the end is cut to the points that there are, down to 0, if `numRead` is given; without it, it fails
/// with -327686. `first` below 1 fails with -327989.
/// @{
DAX_API int TSAccGetData(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count, std::int64_t* numRead,
                         float* values);
DAX_API int TSAccGetDataDoublePrecision(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count,
                                        std::int64_t* numRead, double* values);
DAX_API int TSAccGetDataDigital32(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count, std::int64_t* numRead,
                                  std::uint32_t* values);
DAX_API int TSAccGetDataDigital64(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count, std::int64_t* numRead,
                                  std::uint64_t* values);
/// Sets the range that the sequential calls walk, for an index or all.
/// @param first  below 1 for the start
/// @param last   below 1 for the end of the file
DAX_API int TSAccPrepareSequential(VDTsAcc* acc, int index, std::int64_t first, std::int64_t last);
/// The next points of the range; 0 of them at its end, again and again.
DAX_API int TSAccGetNext(VDTsAcc* acc, int index, std::int64_t count, std::int64_t* numRead, float* values);
DAX_API int TSAccGetNextDoublePrecision(VDTsAcc* acc, int index, std::int64_t count, std::int64_t* numRead, double* values);
DAX_API int TSAccGetNextDigital32(VDTsAcc* acc, int index, std::int64_t count, std::int64_t* numRead, std::uint32_t* values);
DAX_API int TSAccGetNextDigital64(VDTsAcc* acc, int index, std::int64_t count, std::int64_t* numRead, std::uint64_t* values);
/// @}

/// @name Writing
/// -327990 past the end of a file of fixed length, -328006 past 2,000,000,000 points where the format has that limit.
/// @{
DAX_API int TSAccPutData(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count, const float* values);
DAX_API int TSAccPutDataDoublePrecision(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count,
                                        const double* values);
DAX_API int TSAccPutDataDigital32(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count,
                                  const std::uint32_t* values);
DAX_API int TSAccPutDataDigital64(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count,
                                  const std::uint64_t* values);
/// -328007 past the range of `TSAccPrepareSequential`.
DAX_API int TSAccPutNext(VDTsAcc* acc, int index, std::int64_t count, const float* values);
DAX_API int TSAccPutNextDigital32(VDTsAcc* acc, int index, std::int64_t count, const std::uint32_t* values);
DAX_API int TSAccPutNextDigital64(VDTsAcc* acc, int index, std::int64_t count, const std::uint64_t* values);
/// @}

/// @name Statistics
/// A double channel has its statistics in double, every other one in float; asked for in the other precision they are 0. They
/// come from the file if the format stores them, from the data as it is written in order from point 1, or from
/// `TSAccCalcStats`; until then, and when data was written since, they fail with -327987. A format that stores them gets them
/// with a flush, which reads the channel if its data was written in another order.
///
/// With offsets in use (`TSAccSetUseOffset`), max, min, mean and rms are those of the data with the offset added.
/// @{
/// @param id  `VTTsAccStatMax` to `VTTsAccStatRms`
DAX_API int TSAccGetStat(VDTsAcc* acc, int index, int id, float* value);
DAX_API int TSAccGetStatDoublePrecision(VDTsAcc* acc, int index, int id, double* value);
/// @param id  `VTTsAccStatPointOfMax` to `VTTsAccStatPointOfAbs`
DAX_API int TSAccGetPointStat(VDTsAcc* acc, int index, int id, std::int64_t* point);
DAX_API int TSAccGetAllStats(VDTsAcc* acc, int index, float* max, float* min, float* mean, float* sdev, float* rms,
                             std::int64_t* pointOfMax, std::int64_t* pointOfMin, std::int64_t* pointOfAbs);
DAX_API int TSAccGetAllStatsDoublePrecision(VDTsAcc* acc, int index, double* max, double* min, double* mean, double* sdev,
                                            double* rms, std::int64_t* pointOfMax, std::int64_t* pointOfMin,
                                            std::int64_t* pointOfAbs);
/// Replaces the float statistics of a channel. They aren't taken for valid by that: they show, and reach the file, only where
/// statistics worked out here are there already. -327998 where writing isn't possible.
DAX_API int TSAccSetStats(VDTsAcc* acc, int index, float max, float min, float mean, float sdev, float rms,
                          std::int64_t pointOfMax, std::int64_t pointOfMin, std::int64_t pointOfAbs);
/// Where the statistics of all channels come from when data is written; -327998 where writing isn't possible. An open for
/// writing begins with (1, 0).
/// @param enable       non-zero gathers them anew from point 1, 0 leaves them undefined
/// @param recalculate  non-zero has them worked out from the file at the next flush, whatever `enable` says
DAX_API int TSAccSetStatsMonitor(VDTsAcc* acc, char enable, char recalculate);
/// Works the statistics out from the data, of an index or all; with all, digital channels are left out. Moves the sequential
/// cursors. Offsets in use are left out of it, and added when the statistics are read. -328019 if the progress object cancels,
/// -328015 if the file doesn't give all its points.
DAX_API int TSAccCalcStats(VDTsAcc* acc, int index);
/// Keeps a host's progress object for long operations; it stays the host's. Null for none.
DAX_API int TSAccSetProgressObject(VDTsAcc* acc, VDProgressObject* progress);
/// @}

/// @name Full-scale limits
/// @{
/// The range of the channel's values, with the offset added if offsets are in use. -328021 if there is none.
DAX_API int TSAccGetFullScaleLimits(VDTsAcc* acc, int index, float* low, float* high);
/// The limits in any order. -327998 where writing isn't possible.
DAX_API int TSAccSetFullScaleLimits(VDTsAcc* acc, int index, float limit, float otherLimit);
/// Whether the file says that its limits can be relied on.
DAX_API int TSAccGetFullScaleValid(VDTsAcc* acc, int index, char* valid);
/// @}

/// @name Format-specific values and metadata
/// @{
/// A name that the format doesn't know leaves the value empty, and succeeds. `DaxFormatValue` has the names that all formats
/// share, among them the one that lists the others.
DAX_API int TSAccGetFormatSpecificValue(VDTsAcc* acc, int index, const char* name, VDVariant* value);
/// Needs no open test: storage files take the hints "Z4NumberOfElements" (64-bit, points of a channel) and "Z4ElementsSize"
/// (long, bytes of a point) before a new one is opened, which gives it the record size that suits, and WAV files "Encoding"
/// and their texts.
DAX_API int TSAccSetFormatSpecificValue(VDTsAcc* acc, int index, const char* name, VDVariant* value);
/// The metadata of the test. The mapper stays the library's or the plug-in's and is valid until the test is closed.
DAX_API int TSAccGetMetaData(VDTsAcc* acc, LQChannelMapper** mapper);
/// Adds each channel's offset, which comes from the metadata, to float and double values as they are read.
DAX_API int TSAccSetUseOffset(VDTsAcc* acc, char useOffset);
/// @}

}  // extern "C"

#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDArray.h"
#include "vdbase/VDVariant.h"

class LQChannelMapper;
class VDProgressObject;

/// Reading and writing complex frequency data of any format: spectra, frequency responses, waterfalls. Each channel is a matrix
/// of spectra by lines, a line being one frequency of a spectrum; two axes, which all channels of the test share, say at which
/// frequency a line lies, and at which time, speed or the like a spectrum was taken.
///
/// The life of an access object: `CFAccCreate`, `CFAccSetId`, `CFAccOpen`, data, `CFAccClose`, `CFAccRelease`. Channels are
/// indexes into the channel list sorted by number; spectra and lines count from 1. Data moves between the caller's buffer and
/// the format plug-in without a copy in between. Of the three axes, X is that of the lines, Y that of the spectra and Z that of
/// the values; their texts belong to a channel.
///
/// Errors of every function: -327993 "File is not yet open", -327995 "Channel index out of range", -328683 with the plug-in's
/// own text, -327690 "Unknown error in access plugin".

/// What a buffer holds. A format converts between single and double, and gives imaginary parts of 0 for real data; a real kind
/// asked of complex data is refused. Axes are real.
namespace DaxSpectrumKind {
constexpr int Float = 1;
constexpr int Double = 2;
constexpr int ComplexFloat = 3;   ///< pairs of real and imaginary part, so two floats a line
constexpr int ComplexDouble = 4;  ///< pairs of doubles

constexpr bool IsComplex(int kind)
{
    return kind == ComplexFloat || kind == ComplexDouble;
}
constexpr bool IsDouble(int kind)
{
    return kind == Double || kind == ComplexDouble;
}
}  // namespace DaxSpectrumKind

/// The type of a test, what its values are a function of what for. The formats of this library use the numbers of universal
/// files, and a sub type of 0.
namespace DaxSpectrumType {
constexpr int General = 0;
constexpr int AutoSpectrum = 2;
constexpr int CrossSpectrum = 3;
constexpr int FrequencyResponse = 4;
constexpr int Transmissibility = 5;
constexpr int Coherence = 6;
constexpr int PowerSpectralDensity = 9;
constexpr int EnergySpectralDensity = 10;
constexpr int Spectrum = 12;
}  // namespace DaxSpectrumType

extern "C" {

/// @name Life
/// @{
/// A new object with one reference; null with -327681 when memory is short.
DAX_API VDCFAcc* CFAccCreate();
/// Closes the test if it is open.
DAX_API int CFAccRelease(VDCFAcc* acc);
/// Binds the object to a test, of which it keeps a copy, and to the format's plug-in. -331585 if no plug-in serves its type.
/// @param create  non-zero for a test that is to be written anew
DAX_API int CFAccSetId(VDCFAcc* acc, VDFileId* id, char create);
/// @param mode  1 read, 2 read and write an existing file, 3 and 4 create. -328017 if it doesn't fit `create`
DAX_API int CFAccOpen(VDCFAcc* acc, int mode);
/// A test that isn't open is no failure.
DAX_API int CFAccClose(VDCFAcc* acc);
DAX_API int CFAccFlush(VDCFAcc* acc);
/// Registers an access plug-in that isn't configured; a name that is there already is left alone.
DAX_API int CFAccAddPlugin(const char* name, const char* prefix, const char* library, const char* description);
/// @param capability  a `DaxComplexFrequency::Capability`
DAX_API int CFAccGetCapability(VDCFAcc* acc, int capability, char* answer);
/// Number of lines that suits the format for one call. Needs no open test.
DAX_API int CFAccGetBufferSize(VDCFAcc* acc, long* lines);
/// Hands a host's progress object, which stays the host's, to the plug-in. Null for none.
DAX_API int CFAccSetProgressObject(VDCFAcc* acc, VDProgressObject* progress);
/// @}

/// @name Channels
/// @{
/// 0 until the first `CFAccOpen`.
DAX_API int CFAccGetNumChans(VDCFAcc* acc, long* count);
/// The channel numbers, ascending.
DAX_API int CFAccGetChans(VDCFAcc* acc, VDArrayWithSort<long>* numbers);
/// -328010 for a number that isn't there.
DAX_API int CFAccGetChanIndex(VDCFAcc* acc, int number, int* index);
DAX_API int CFAccIsValidChan(VDCFAcc* acc, int number, char* valid);
/// The channel's number as the file has it.
DAX_API int CFAccGetActualChanNumber(VDCFAcc* acc, int index, long* number);
/// Title and units of a channel are those of its id where the format stores none.
DAX_API int CFAccGetChanTitle(VDCFAcc* acc, int index, VDString* title);
DAX_API int CFAccGetChanUnits(VDCFAcc* acc, int index, VDString* units);
/// -331586 to -331591 where the format doesn't store the text.
DAX_API int CFAccGetXTitle(VDCFAcc* acc, int index, VDString* title);
DAX_API int CFAccGetXUnits(VDCFAcc* acc, int index, VDString* units);
DAX_API int CFAccGetYTitle(VDCFAcc* acc, int index, VDString* title);
DAX_API int CFAccGetYUnits(VDCFAcc* acc, int index, VDString* units);
DAX_API int CFAccGetZTitle(VDCFAcc* acc, int index, VDString* title);
DAX_API int CFAccGetZUnits(VDCFAcc* acc, int index, VDString* units);
/// -327691 and -327695 where the format stores no title or units of a channel, else as the getters.
DAX_API int CFAccSetChanTitle(VDCFAcc* acc, int index, const char* title);
DAX_API int CFAccSetChanUnits(VDCFAcc* acc, int index, const char* units);
DAX_API int CFAccSetXTitle(VDCFAcc* acc, int index, const char* title);
DAX_API int CFAccSetXUnits(VDCFAcc* acc, int index, const char* units);
DAX_API int CFAccSetYTitle(VDCFAcc* acc, int index, const char* title);
DAX_API int CFAccSetYUnits(VDCFAcc* acc, int index, const char* units);
DAX_API int CFAccSetZTitle(VDCFAcc* acc, int index, const char* title);
DAX_API int CFAccSetZUnits(VDCFAcc* acc, int index, const char* units);
/// Longest texts that the file can hold, in bytes.
DAX_API int CFAccGetMaxTitleLength(VDCFAcc* acc, long* length);
DAX_API int CFAccGetMaxUnitsLength(VDCFAcc* acc, long* length);
/// @}

/// @name The test as a whole
/// @{
/// @param type  a `DaxSpectrumType` in the formats of this library
DAX_API int CFAccGetType(VDCFAcc* acc, int* type);
DAX_API int CFAccGetSubType(VDCFAcc* acc, int* subType);
DAX_API int CFAccGetNumSpectra(VDCFAcc* acc, std::int64_t* spectra);
DAX_API int CFAccGetNumLines(VDCFAcc* acc, std::int64_t* lines);
/// Non-zero if the values are complex.
DAX_API int CFAccGetComplex(VDCFAcc* acc, char* isComplex);
DAX_API int CFAccSetType(VDCFAcc* acc, int type);
DAX_API int CFAccSetSubType(VDCFAcc* acc, int subType);
/// A new test needs its lines before data can be put; its spectra grow with the data.
DAX_API int CFAccSetNumSpectra(VDCFAcc* acc, std::int64_t spectra);
DAX_API int CFAccSetNumLines(VDCFAcc* acc, std::int64_t lines);
DAX_API int CFAccSetComplex(VDCFAcc* acc, char isComplex);
/// @}

/// @name Reading
/// `count` values from the first one on, into a buffer of the given `DaxSpectrumKind`. Where the end comes earlier, `numRead`
/// gets what there is; if it is null, that fails with -327686. -331581 and -331583 without any spectra or lines, -331582 and
/// -331584 outside of those there are.
/// @{
DAX_API int CFAccGetData(VDCFAcc* acc, int index, std::int64_t spectrum, std::int64_t firstLine, std::int64_t count, int kind,
                         std::int64_t* numRead, void* values);
DAX_API int CFAccGetLineAxisData(VDCFAcc* acc, std::int64_t first, std::int64_t count, int kind, std::int64_t* numRead,
                                 void* values);
DAX_API int CFAccGetSpectrumAxisData(VDCFAcc* acc, std::int64_t first, std::int64_t count, int kind, std::int64_t* numRead,
                                     void* values);
/// @}

/// @name Writing
/// -327998 where writing isn't possible, -327990 past the last line in a format that can't grow, -328006 past 2,000,000,000
/// where the format has that limit. Data of a spectrum behind the last one make the test grow.
/// @{
DAX_API int CFAccPutData(VDCFAcc* acc, int index, std::int64_t spectrum, std::int64_t firstLine, std::int64_t count, int kind,
                         const void* values);
DAX_API int CFAccPutLineAxisData(VDCFAcc* acc, std::int64_t first, std::int64_t count, int kind, const void* values);
DAX_API int CFAccPutSpectrumAxisData(VDCFAcc* acc, std::int64_t first, std::int64_t count, int kind, const void* values);
/// @}

/// @name Format-specific values and metadata
/// @{
/// Of a channel, spectrum and line, each -1 for none. A name that the format doesn't know leaves the value empty, and succeeds;
/// the format may look at what the value holds. `DaxFormatValue` has the names that all formats share. Needs no open test.
DAX_API int CFAccGetFormatSpecificValue(VDCFAcc* acc, int channel, std::int64_t spectrum, std::int64_t line, const char* name,
                                        VDVariant* value);
DAX_API int CFAccSetFormatSpecificValue(VDCFAcc* acc, int channel, std::int64_t spectrum, std::int64_t line, const char* name,
                                        VDVariant* value);
/// The metadata of the test. The mapper stays the library's or the plug-in's and is valid until the test is closed.
DAX_API int CFAccGetMetaData(VDCFAcc* acc, LQChannelMapper** mapper);
/// @}

}  // extern "C"

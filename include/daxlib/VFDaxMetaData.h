#pragma once

#include "daxlib/DaxApi.h"
#include "vdbase/VDStringArray.h"

class LQChannelMapper;

/// Copying and merging the metadata of tests between two mappers (`vdstore/LQChannelMapper.h`).
///
/// Every function gives true on success. Mappers stay the caller's; a null one fails. Where an index is expected, any
/// negative one stands for the global slot. Sets and items are paired by their exact names, channels by their numbers.
/// Nothing is rolled back: a function that fails leaves what it copied until then. No locks are taken.

/// What a copy takes.
enum VTMetaDataCopyMode : int {
    VTMetaDataCopyMatching = 0,        ///< every set and item; of a whole mapper, the channels that both sides have
    VTMetaDataCopyPublic = 1,          ///< leaves out the set "PropertyOverrides" and sets and items named "__..."
    VTMetaDataCopyAddChannels = 2,     ///< of a whole mapper, also makes the channels that the target lacks, without a title
    VTMetaDataCopyWithAttributes = 3,  ///< takes attributes: of a whole mapper all, of a single slot only a channel's
};

/// @name Whole mappers
/// The global metadata first, then each channel. A set's items are added to the set of the same name in the target, but
/// "LegacyExtraDetails" go to "ExtraDetails".
///
/// @param overwrite   replaces items that the target has; otherwise those stay
/// @param attributes  takes the set "Attributes"
/// @param testInfo    takes the set "InputTestInfo"
/// @{
DAX_API bool VFDaxCopyMetaData(LQChannelMapper* source, LQChannelMapper* target, VTMetaDataCopyMode mode);
DAX_API bool VFDaxCopyMetaDataOverwrite(LQChannelMapper* source, LQChannelMapper* target, VTMetaDataCopyMode mode,
                                        bool overwrite);
DAX_API bool VFDaxCopyMetaDataOverwriteAttributes(LQChannelMapper* source, LQChannelMapper* target, VTMetaDataCopyMode mode,
                                                  bool overwrite, bool attributes);
DAX_API bool VFDaxCopyMetaDataOverwriteAttributesTestInfo(LQChannelMapper* source, LQChannelMapper* target,
                                                          VTMetaDataCopyMode mode, bool overwrite, bool attributes,
                                                          bool testInfo);
/// @}

/// @name Single slots
/// The same for one channel or the global slot. A negative source index makes the target the global slot too.
/// @{
DAX_API bool VFDaxCopySingleMetaData(LQChannelMapper* source, int sourceIndex, LQChannelMapper* target, int targetIndex,
                                     VTMetaDataCopyMode mode);
DAX_API bool VFDaxCopySingleMetaDataOverwrite(LQChannelMapper* source, int sourceIndex, LQChannelMapper* target,
                                              int targetIndex, VTMetaDataCopyMode mode, bool overwrite);
DAX_API bool VFDaxCopySingleMetaDataOverwriteAttributes(LQChannelMapper* source, int sourceIndex, LQChannelMapper* target,
                                                        int targetIndex, VTMetaDataCopyMode mode, bool overwrite,
                                                        bool attributes);
DAX_API bool VFDaxCopySingleMetaDataOverwriteAttributesTestInfo(LQChannelMapper* source, int sourceIndex,
                                                                LQChannelMapper* target, int targetIndex,
                                                                VTMetaDataCopyMode mode, bool overwrite, bool attributes,
                                                                bool testInfo);
/// The same for the named sets only. An empty list of names fails. The mode never takes attributes by itself here.
DAX_API bool VFDaxCopySingleMetaDataOverwriteAttributesTestInfoSelectedSets(LQChannelMapper* source, int sourceIndex,
                                                                            LQChannelMapper* target, int targetIndex,
                                                                            VTMetaDataCopyMode mode, bool overwrite,
                                                                            bool attributes, bool testInfo,
                                                                            VDStringArray sets);
/// The same with a check before anything is copied.
/// @param check  true reports an empty list (-327699), names that match no set of the source, white space around them and
///               case aside (-327700), and a set that the target can't take (-327701); false fails or copies what there is
///               without a report
DAX_API bool VFDaxCopySingleMetaDataOverwriteAttributesTestInfoSelectedSets2(LQChannelMapper* source, int sourceIndex,
                                                                             LQChannelMapper* target, int targetIndex,
                                                                             VTMetaDataCopyMode mode, bool overwrite,
                                                                             bool attributes, bool testInfo, bool check,
                                                                             VDStringArray sets);
/// @}

/// Adds the items of one mapper to another, attributes aside: global metadata and that of the channels that both have. Mind
/// the order of the arguments. A source channel without a number fails.
/// @param overwrite  replaces items that the target has; the new one comes at the end of its set
DAX_API bool VFDaxMergeMetadata(LQChannelMapper* target, LQChannelMapper* source, bool overwrite);

/// A copy with the same channels at the same indexes; a channel without a number comes without its metadata.
/// @return a mapper that the caller deletes; null on failure
DAX_API LQChannelMapper* VFDaxCloneMapper(LQChannelMapper* source);

/// Writes the identity of the test into the sets "InputTestInfo" of the mapper, anew: name, path and format to the global
/// set and, for a test on disk, each channel's file name to the channel's.
/// @param fileId  a `VDFileId` that has every channel of the mapper
DAX_API bool VFDaxAddInputTestInfo(LQChannelMapper* mapper, void* fileId);

/// Lays metadata from XML files over what a test holds (`VDXmlMetaDataTranslator` has their form). The site's file
/// "_definitions.xml", in the folder `home` or else the current one, adds what the test doesn't have; the test's own file
/// (`FIDGetExtraMetadataFilename`) replaces what it has. Channels that the mapper lacks are passed over. A file that can't be
/// read or parsed fails the call; only the site's file may be absent.
/// @param fileId           a `VDFileId`
/// @param skipDefinitions  leaves the site's file out
DAX_API bool VFDaxAddExtraMetadata(void* fileId, bool skipDefinitions, LQChannelMapper* mapper);

/// How far two sample rates may lie apart to count as equal, as a ratio: 1.001 for the default preference of 0.1 %
/// ("/FileFormats/general/SampleRateComparisonPercent"), which is read once in the life of the library.
DAX_API float VFDaxGetSampleRateTolerance();

#pragma once

#include "daxlib/VDMetaDataConfigurationItem.h"
#include "vdbase/VDArray.h"
#include "vdbase/VDStringArray.h"

#include <memory>

/// A selection of metadata items for a list of files: items of a test and items of a channel, each list in an order of its
/// own. It holds names only and never looks at metadata. As a file it is XML:
///
///     <FileListMetadata Version="1.0">
///       <Test>
///         <Item setName="ExtraDetails" itemName="Vehicle" type="String"/>
///       </Test>
///       <Channel/>
///     </FileListMetadata>
///
/// The key of an item is its set name, a dot and its item name. A result of 0 is all that tells of a failure: nothing is
/// recorded.
class DAX_API VDMetaDataConfiguration
{
public:
    VDMetaDataConfiguration();
    /// Copies the items too.
    VDMetaDataConfiguration(const VDMetaDataConfiguration& other);
    VDMetaDataConfiguration& operator=(const VDMetaDataConfiguration& other);
    virtual ~VDMetaDataConfiguration();

    /// "1.0" at first; any text that a file says is kept.
    VDString GetVersion() const { return version_; }
    /// The file that was last read or written; empty if there is none.
    VDString GetFilename() const { return filename_; }
    /// Becomes like a new object.
    void Clear();
    /// Replaces the content by that of a file.
    /// @return 0 if the file can't be parsed or is no such file, with the object as it was; also if an attribute is missing,
    ///         with what stands before that place and without a filename
    char Read(VDString filename);
    /// @return 0 if the file can't be written, or if a text has characters that XML can't hold
    char Write(VDString filename);

    /// @name Items of a test
    /// @{
    void ClearTests();
    int GetNumTests() const { return tests_.GetSize(); }
    /// The item stays this object's; null for an index out of range.
    VDMetaDataConfigurationItem* GetTest(int index) const;
    /// 0, with nothing written, for an index out of range or a null pointer.
    char GetTest(int index, VDString* setName, VDString* itemName, VDString* type) const;
    /// Appends an item, whether there is one like it or not.
    void AddTest(VDString setName, VDString itemName, VDString type);
    /// 0 for an index out of range.
    char UpdateTest(int index, VDString setName, VDString itemName, VDString type);
    char DeleteTest(int index);
    /// Deletes the first item of this key. What stands before the first dot is taken for the set name, so that a set name with
    /// a dot can't be reached. 0 if there is no such item, or no dot.
    char DeleteTest(VDString key);
    /// The keys of all items, in order; 0 for a null pointer.
    char GetTestKeys(VDStringArray* keys) const;
    /// The type texts in the same order.
    char GetTestKeyTypes(VDStringArray* types) const;
    /// @}

    /// @name Items of a channel
    /// @{
    void ClearChannels();
    int GetNumChannels() const { return channels_.GetSize(); }
    /// The item stays this object's; null for an index out of range.
    VDMetaDataConfigurationItem* GetChannel(int index) const;
    /// 0, with nothing written, for an index out of range or a null pointer.
    char GetChannel(int index, VDString* setName, VDString* itemName, VDString* type) const;
    /// Appends an item, whether there is one like it or not.
    void AddChannel(VDString setName, VDString itemName, VDString type);
    /// 0 for an index out of range.
    char UpdateChannel(int index, VDString setName, VDString itemName, VDString type);
    char DeleteChannel(int index);
    /// Deletes the first item of this key. What stands before the first dot is taken for the set name, so that a set name with
    /// a dot can't be reached. 0 if there is no such item, or no dot.
    char DeleteChannel(VDString key);
    /// The keys of all items, in order; 0 for a null pointer.
    char GetChannelKeys(VDStringArray* keys) const;
    /// The type texts in the same order.
    char GetChannelKeyTypes(VDStringArray* types) const;
    /// @}

private:
    VDString filename_;
    VDString version_;
    VDArray<std::unique_ptr<VDMetaDataConfigurationItem>> tests_{10};
    VDArray<std::unique_ptr<VDMetaDataConfigurationItem>> channels_{10};
};

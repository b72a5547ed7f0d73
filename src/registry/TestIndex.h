#pragma once

#include "ChannelFile.h"

#include <array>
#include <string>
#include <unordered_map>
#include <vector>

/// What of a file decides which test of its name it fits.
struct VDTestType
{
    int fileId = 0;
    int subId = 0;
    int opSys = 0;  ///< code of the byte order
};

/// The tests that a batch of files makes, by name. It finds what a search through the list of them, in their order, finds.
class VDTestIndex
{
public:
    /// Whether there is a test of this name and extension, in any case.
    bool HasName(const VDChannelFile& channel) const;
    /// The first test that a file fits: of the same name and extension, without regard to case, the same type and, but for
    /// one format, a byte order that needs no swapping. A test of which the file isn't part where case counts isn't found.
    /// Null if there is none.
    VDFileId* Find(const VDChannelFile& channel, const VDTestType& type) const;
    void Enter(const VDChannelFile& channel, const VDTestType& type, VDFileId* test);

private:
    enum ByteOrder { Unknown, Big, Little, NumByteOrders };

    /// The first test of each byte order. One of unknown order fits all.
    struct Tests
    {
        int fileId = 0;
        int subId = 0;
        std::array<VDFileId*, NumByteOrders> first = {};
        std::array<std::size_t, NumByteOrders> position = {};
    };
    /// All tests of one name, written in one way.
    struct Name
    {
        VDChannelFile channel;
        std::vector<Tests> tests;
    };
    using Names = std::unordered_map<std::string, Name>;

    static std::string KeyOf(const VDChannelFile& channel);
    static std::string FoldedKeyOf(const VDChannelFile& channel);
    static ByteOrder OrderOf(const VDTestType& type);
    const Name* FindName(const VDChannelFile& channel) const;

    Names names_;                                               ///< as they are written
    std::unordered_map<std::string, std::string> foldedNames_;  ///< key of the first of each way to write one
    std::size_t count_ = 0;
};

#pragma once

/// Formats whose tests have rules of their own. They are known by their file ids, as their plug-ins lie elsewhere.
namespace SpecialFormat {

constexpr int SigChannels = 2200;        ///< the channel files of its folder tests have the extension "sig"
constexpr int ExtensionFromDisk = 2400;  ///< the extension of its folder tests' channel files is looked up on disk

}  // namespace SpecialFormat

/// Sub ids of the storage format that stand for temporary files: time series, histogram, multi-column, complex frequency.
constexpr bool VFIsTemporarySubId(int subId)
{
    return subId >= 13 && subId <= 16;
}

/// Which sub ids of the storage format hold the same kind of data, permanent or temporary, and so may mean the same test.
constexpr bool VFAreStorageSubIdsAlike(int left, int right)
{
    const auto areBoth = [=](auto isMember) { return isMember(left) && isMember(right); };
    return areBoth([](int subId) { return subId == 4 || subId == 11 || subId == 13; }) ||
           areBoth([](int subId) { return subId == 7 || subId == 12 || subId == 15; });
}

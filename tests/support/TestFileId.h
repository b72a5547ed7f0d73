#pragma once

#include "daxlib/DaxHandle.h"
#include "support/TestSupport.h"

#include <string>
#include <vector>

/// Makes file ids for tests and asks them.

inline VDFileIdHandle TestId()
{
    return VDFileIdHandle(FIDCreate());
}

inline VDFileIdHandle TestId(const std::string& filename)
{
    VDFileIdHandle id = TestId();
    EXPECT_NE(0, FIDSetFilename(id.Get(), VTNameFormFile, filename.c_str(), ""));
    return id;
}

inline VDFileIdHandle TestStemId(const std::string& stem, const std::string& extension)
{
    VDFileIdHandle id = TestId();
    EXPECT_NE(0, FIDSetFilename(id.Get(), VTNameFormTestPlusChannels, stem.c_str(), extension.c_str()));
    return id;
}

inline void TestAddChannels(const VDFileIdHandle& id, const std::vector<int>& numbers)
{
    for (const int number : numbers) {
        int index = -1;
        EXPECT_NE(0, FIDAddChannel(id.Get(), number, &index));
    }
}

/// The value that a getter stores; further arguments of the getter follow the id.
template <class Value, auto Getter, class... Arguments>
Value TestGet(const VDFileIdHandle& id, Arguments... arguments)
{
    Value value{};
    EXPECT_NE(0, Getter(id.Get(), arguments..., &value));
    return value;
}

template <auto Getter, class... Arguments>
int TestInt(const VDFileIdHandle& id, Arguments... arguments)
{
    return TestGet<int, Getter>(id, arguments...);
}

template <auto Getter, class... Arguments>
int TestFlag(const VDFileIdHandle& id, Arguments... arguments)
{
    return TestGet<char, Getter>(id, arguments...);
}

template <auto Getter, class... Arguments>
std::string TestText(const VDFileIdHandle& id, Arguments... arguments)
{
    return TestGet<VDString, Getter>(id, arguments...).Str();
}

inline std::vector<long> TestNumbers(const VDFileIdHandle& id)
{
    const auto numbers = TestGet<VDArrayWithSort<long>, FIDGetChans>(id);
    return {numbers.begin(), numbers.end()};
}

inline std::string TestFilename(const VDFileIdHandle& id, VDString* extension = nullptr)
{
    VDString filename;
    EXPECT_NE(0, FIDGetFilename(id.Get(), &filename, extension));
    return filename.Str();
}

inline std::string TestDescriptor(const VDFileIdHandle& id, int type)
{
    return TestText<FIDGetTestDescriptor>(id, type);
}

/// Expects the whole text and the routine of the last report.
inline void ExpectReport(int code, const std::string& text, const std::string& routine)
{
    ExpectErrorText(code, text);
    ExpectError(code, {}, routine);
}

// Reads the input as a file id in XML and, from a file, as an id and as a list of ids in binary form. What comes out must
// go to both forms and come back as it was.

#include "FuzzFile.h"

#include "daxlib/DaxHandle.h"
#include "vdbase/VDIo.h"

namespace {

void Need(bool condition)
{
    if (!condition)
        std::abort();
}

/// Empty for an id with a text that XML can't hold.
VDString ToXml(VDFileId* id)
{
    VDString xml;
    return FIDToXml(id, &xml) != 0 ? xml : VDString();
}

VDString ThroughXml(const VDString& xml)
{
    const VDFileIdHandle id(FIDCreate());
    Need(FIDFromXml(id.Get(), &xml) != 0);
    return ToXml(id.Get());
}

void ReadXml(const VDString& xml)
{
    const VDFileIdHandle id(FIDCreate());
    if (FIDFromXml(id.Get(), &xml) == 0)
        return;
    if (const VDString written = ToXml(id.Get()); !written.IsEmpty())
        Need(ThroughXml(written) == written);
    int count = 0;
    VDString filename;
    Need(FIDGetNameForm(id.Get(), &count) != 0);
    FIDGetChanFilename(id.Get(), 0, &filename);
}

/// What an object in a file holds, written again, is what is read from there.
template <class Handle, auto Create, auto Serialise>
void ReadBinary(const char* filename)
{
    VDIo io(filename);
    Need(io.Open(VTOpenUpdate));
    const Handle object(Create());
    if (Serialise(object.Get(), &io, 1, nullptr) == 0)
        return;
    const std::int64_t behind = io.GetFileSize();
    std::int64_t position = -1;
    Need(io.SetCurPos(behind) && Serialise(object.Get(), &io, 0, &position) != 0 && position == behind);
    const std::int64_t size = io.GetFileSize() - behind;
    std::string first(static_cast<std::size_t>(size), '\0');
    std::string second = first;
    const Handle again(Create());
    Need(io.Read(behind, size, first.data(), nullptr) && io.SetCurPos(behind) &&
         Serialise(again.Get(), &io, 1, nullptr) != 0 && Serialise(again.Get(), &io, 0, &position) != 0);
    Need(io.Read(position, size, second.data(), nullptr) && first == second);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FuzzFile file(".ids");
    const std::string_view text = FuzzText(data, size);
    if (text.starts_with('<')) {
        ReadXml(VDString(text));
        return 0;
    }
    ReadBinary<VDFileIdHandle, FIDCreate, FIDSerialise>(file.Write(text));
    ReadBinary<VDFileIdArrayHandle, FIACreate, FIASerialise>(file.Write(text));
    return 0;
}

#include "daxlib/FIA.h"

#include "VDFileId.h"
#include "VDFileIdArray.h"

#include "frame/ExportedWrapper.h"

VDFileIdArray* FIACreate()
{
    return VFCreate<VDFileIdArray>(__func__);
}

int FIAAddRef(VDFileIdArray* array)
{
    return VFAddRef(array, __func__);
}

int FIARelease(VDFileIdArray* array)
{
    return VFRelease(array, __func__);
}

int FIACopy(VDFileIdArray* target, VDFileIdArray* source)
{
    return VFForwardPair<&VDFileIdArray::Copy>(target, source, __func__);
}

int FIAGetSize(VDFileIdArray* array, int* size)
{
    return VFForward<&VDFileIdArray::GetSize>(array, __func__, size);
}

int FIAClear(VDFileIdArray* array)
{
    return VFForward<&VDFileIdArray::Clear>(array, __func__);
}

int FIAAppendItem(VDFileIdArray* array, VDFileId* id)
{
    return VFForwardPair<&VDFileIdArray::AppendItem>(array, id, __func__);
}

int FIAAppend(VDFileIdArray* target, VDFileIdArray* source)
{
    return VFForwardPair<&VDFileIdArray::Append>(target, source, __func__);
}

int FIAGetAt(VDFileIdArray* array, int index, VDFileId** id)
{
    return VFForward<&VDFileIdArray::GetAt>(array, __func__, index, id);
}

int FIARemoveAt(VDFileIdArray* array, int index)
{
    return VFForward<&VDFileIdArray::RemoveAt>(array, __func__, index);
}

int FIASelectAt(VDFileIdArray* array, int index, char selected)
{
    return VFForward<&VDFileIdArray::SelectAt>(array, __func__, index, selected);
}

int FIAGetSelectAt(VDFileIdArray* array, int index, char* selected)
{
    return VFForward<&VDFileIdArray::GetSelectAt>(array, __func__, index, selected);
}

int FIASelectAll(VDFileIdArray* array, char selected)
{
    return VFForward<&VDFileIdArray::SelectAll>(array, __func__, selected);
}

int FIARemoveSelected(VDFileIdArray* array, char selected)
{
    return VFForward<&VDFileIdArray::RemoveSelected>(array, __func__, selected);
}

int FIAFind(VDFileIdArray* array, VDFileId* id, int* index)
{
    return VFForwardPair<&VDFileIdArray::Find>(array, id, __func__, index);
}

int FIASort(VDFileIdArray* array, int flags)
{
    return VFForward<&VDFileIdArray::Sort>(array, __func__, flags);
}

int FIACreateFromTestSpec(VDFileIdArray* array, const char* text)
{
    return VFForward<&VDFileIdArray::CreateFromTestSpec>(array, __func__, text);
}

int FIAFindFromTestSpec(VDFileIdArray* array, const char* text, VDFileId** id)
{
    return VFForward<&VDFileIdArray::FindFromTestSpec>(array, __func__, text, id);
}

int FIASerialise(VDFileIdArray* array, VDIo* io, char reading, std::int64_t* context)
{
    return VFForward<&VDFileIdArray::Serialise>(array, __func__, io, reading, context);
}

#pragma once

#include "VDAccessPlugins.h"
#include "frame/ExportedWrapper.h"

/// `VFForward` for what all access families share: an operation of the core that the class behind the handle gives with
/// `GetCore`.
template <auto Method, class Class, class... Arguments>
int VFForwardToCore(Class* handle, const char* routine, Arguments... arguments)
{
    return VFExport(routine, [&] {
        if (!VFCheckHandle(handle, routine))
            return 0;
        return static_cast<int>((handle->GetCore().*Method)(arguments...));
    });
}

#pragma once

#include "VDAccessPlugins.h"
#include "frame/ExportedWrapper.h"

/// `VFForward` for an operation of the core of an access object. The class behind the handle has
///
///     template <auto Method, class... Arguments>
///     bool InCore(Arguments... arguments) { return (core_.*Method)(arguments...); }
template <auto Method, class Class, class... Arguments>
int VFForwardToCore(Class* handle, const char* routine, Arguments... arguments)
{
    return VFForward<&Class::template InCore<Method, Arguments...>>(handle, routine, arguments...);
}

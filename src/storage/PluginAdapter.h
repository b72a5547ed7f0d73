#pragma once

#include "frame/ExportedWrapper.h"

#include <atomic>
#include <span>
#include <typeinfo>

// The plug-ins inside the library behind plain functions. `Base` is the base class of a family's plug-ins.

/// The plug-in that an object is; null for any other object. Nothing behind the common base can be looked at before that is
/// known, and finding it out costs more than most calls, so the class that was found last is remembered.
template <class Base>
Base* VFFindPlugin(VDCompBase& object)
{
    static std::atomic<const std::type_info*> lastClass = nullptr;
    const std::type_info* const itsClass = &typeid(object);
    if (itsClass == lastClass.load(std::memory_order_relaxed))
        return static_cast<Base*>(&object);
    Base* const plugin = dynamic_cast<Base*>(&object);
    if (plugin != nullptr)
        lastClass.store(itsClass, std::memory_order_relaxed);
    return plugin;
}

/// Null, recorded, for anything that is no plug-in of this family.
template <class Base>
Base* VFGetPlugin(void* instance, const char* routine)
{
    try {
        Base* const plugin = instance != nullptr ? VFFindPlugin<Base>(*static_cast<VDCompBase*>(instance)) : nullptr;
        if (plugin != nullptr && plugin->GetPluginFamilyId() == Base::FamilyId)
            return plugin;
    } catch (...) {  // no object at all
    }
    VFDaxReportError(DaxError::InvalidHandle, routine);
    return nullptr;
}

template <class Base, auto Method, class... Arguments>
int VFForwardToPluginOf(void* instance, const char* routine, Arguments... arguments)
{
    return VFExport(routine, [=] {
        Base* const plugin = VFGetPlugin<Base>(instance, routine);
        return plugin != nullptr && (plugin->*Method)(arguments...) ? 1 : 0;
    });
}

template <class Base>
int VFReleasePlugin(void* instance, const char* routine)
{
    return VFExport(routine, [=] {
        Base* const plugin = VFGetPlugin<Base>(instance, routine);
        if (plugin != nullptr && plugin->Release() == 0)
            delete plugin;
        return plugin != nullptr ? 1 : 0;
    });
}

/// A class of plug-ins that a family has.
struct VDPluginClass
{
    const char* id;  ///< its class id text
    VDCompBase* (*make)(const char* routine);
};

template <class Plugin>
VDCompBase* VFMakePlugin(const char* routine)
{
    return VFCreate<Plugin>(routine);
}

/// A new plug-in of the class whose id is asked for, whatever the case; null, recorded, if there is none.
inline void* VFCreatePlugin(std::span<const VDPluginClass> classes, const char* classId, const char* routine)
{
    for (const VDPluginClass& known : classes)
        if (VDString(classId).CompareNoCase(known.id) == 0)
            return known.make(routine);
    VFDaxReportError(DaxError::ClassNotRecognised, routine);
    return nullptr;
}

#pragma once

/// Makes the plug-ins of the storage format known, so that it is served without any configuration. A manifest may take their
/// place, or take them out with `skip`.
void VFAddBuiltInPlugins();

#pragma once

class VDFileId;
class VDString;

/// The name of the metadata sidecar of a test: beside the data, named after the test and its extension. It says nothing
/// about whether such a file exists. False when the id has no name to go by.
bool VFSidecarFilename(VDFileId* id, VDString* filename);

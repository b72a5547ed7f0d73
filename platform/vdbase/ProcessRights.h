#pragma once

#include "vdbase/VDString.h"

#include <string_view>

/// Whom this process may listen to: which parts of its surroundings may decide what code it runs.

/// Whether the process got rights at its start that its caller doesn't have (a set-user-id or set-group-id program, file
/// capabilities). Nothing that the caller can set may then decide what is loaded.
bool VFHasRaisedRights();

/// An environment variable; empty if it isn't set, and in a process with raised rights.
std::string_view VFEnvironment(const char* name);
/// The folder that an environment variable names. A relative one would mean another folder in each working directory, which
/// may be anybody's, so that it counts as not set.
std::string_view VFEnvironmentFolder(const char* name);

/// The home folder of the user who runs the process; empty if it can't be told.
VDString VFUserFolder();

/// Judges a file that decides what code runs: the file and the folder that it lies in must belong to root or to the
/// effective user, and nobody else may write to them. Of a link, both ends are judged.
/// @return why the file isn't obeyed; empty if it is, or if there is no such file
VDString VFFindDistrust(const char* filename);

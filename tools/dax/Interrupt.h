#pragma once

/// While an object lives, SIGINT, SIGTERM and SIGHUP don't end the process but are noted, so that what was begun can be
/// cleared away. A second signal ends the process at once.
class VDInterruptGuard
{
public:
    VDInterruptGuard();
    ~VDInterruptGuard();
    VDInterruptGuard(const VDInterruptGuard&) = delete;
    VDInterruptGuard& operator=(const VDInterruptGuard&) = delete;

    /// Whether a signal has come.
    static bool IsInterrupted();
    /// Throws if a signal has come.
    static void Check();
};

#pragma once

#include "daxlib/DaxApi.h"

/// How a host follows a long operation and may end it. The library calls an object of the host's, on the thread of the
/// operation, and never owns it. Whatever a call throws is traced and otherwise taken as if it had returned; the operation
/// goes on.
///
/// `cancel` comes in as 0. Anything else in it on return ends the operation, which then fails with -328019 "Operation
/// aborted".
class DAX_API VDProgressObject
{
public:
    virtual ~VDProgressObject() = default;

    /// @param text         what is being done, for the user; valid during the call
    /// @param cancellable  always 1: the operation can be ended
    virtual void Start(const char* text, int cancellable) = 0;
    /// How far the operation has come, whenever that changes.
    /// @param percent  0 to 100
    virtual void Update(int percent, char* cancel) = 0;
    /// Comes after every piece of work, also between two percentages.
    virtual void Check(char* cancel) = 0;
    /// The operation is over, whichever way it went. Follows every `Start`.
    virtual void End() = 0;
};

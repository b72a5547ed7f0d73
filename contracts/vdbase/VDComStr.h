#pragma once

#include "vdbase/VDString.h"

/// Receives a text from a plain call that gives a pointer and a length. The receiver owns the pointer's memory, which must
/// come from `VFRealloc`.
class VDBASE_API VDComStr
{
public:
    VDComStr() = default;
    ~VDComStr();
    VDComStr(const VDComStr&) = delete;
    VDComStr& operator=(const VDComStr&) = delete;

    /// Where the call stores the pointer; frees what is held.
    char** GetPtr();
    /// Where the call stores the length in bytes.
    int* GetLenPtr() { return &length_; }
    VDString Get() const;

private:
    char* text_ = nullptr;
    int length_ = 0;
};

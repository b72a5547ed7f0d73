#include "vdbase/VDComStr.h"

#include "vdbase/VFMemory.h"

VDComStr::~VDComStr()
{
    VFFree(text_);
}

char** VDComStr::GetPtr()
{
    VFFree(text_);
    text_ = nullptr;
    length_ = 0;
    return &text_;
}

VDString VDComStr::Get() const
{
    return VDString(text_, length_);
}

#include "vdtrace/VXError.h"

#include "vdbase/VFTrace.h"

void VXError(const char* text, int code, int level)
{
    VFTracePrintf("Diagnostic (code %d, level %d): %s\n", code, level, text == nullptr ? "" : text);
}

#include "vdbase/VFTrace.h"

#include "FormatText.h"
#include "ProcessRights.h"

#include <atomic>
#include <cstdio>

namespace {

std::atomic<VFTraceSink> VVSink = nullptr;

bool GoesToStandardError()
{
    static const bool wanted = !VFEnvironment("DAX_TRACE").empty();
    return wanted;
}

}  // namespace

void VFTrace(const char* text)
{
    if (text == nullptr)
        return;
    if (GoesToStandardError())
        std::fputs(text, stderr);
    if (const VFTraceSink sink = VVSink.load())
        sink(text);
}

void VFTracePrintf(const char* format, ...)
{
    if (!GoesToStandardError() && VVSink.load() == nullptr)
        return;
    std::va_list arguments;
    va_start(arguments, format);
    VFTrace(VFFormatArguments(format, arguments).c_str());
    va_end(arguments);
}

void VFTraceSetSink(VFTraceSink sink)
{
    VVSink.store(sink);
}

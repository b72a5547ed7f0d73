#include "Interrupt.h"

#include "ToolError.h"

#include <csignal>

namespace {

constexpr int VVSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t VVInterrupted = 0;

void VFNoteSignal(int)
{
    VVInterrupted = 1;
}

}  // namespace

VDInterruptGuard::VDInterruptGuard()
{
    struct sigaction action = {};
    action.sa_handler = VFNoteSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    sigemptyset(&action.sa_mask);
    for (const int signal : VVSignals) {
        struct sigaction present = {};
        sigaction(signal, nullptr, &present);
        if (present.sa_handler != SIG_IGN)  // nohup and the like stay in force
            sigaction(signal, &action, nullptr);
    }
}

VDInterruptGuard::~VDInterruptGuard()
{
    for (const int signal : VVSignals) {
        struct sigaction present = {};
        sigaction(signal, nullptr, &present);
        if (present.sa_handler == VFNoteSignal)
            std::signal(signal, SIG_DFL);
    }
}

bool VDInterruptGuard::IsInterrupted()
{
    return VVInterrupted != 0;
}

void VDInterruptGuard::Check()
{
    if (IsInterrupted())
        VFFail(DaxToolError::Interrupted, "Interrupted by a signal; the output was not written", "VDInterruptGuard::Check");
}

// SPDX-License-Identifier: MIT
// truss: platform
#include "truss/platform/interruptsignal.h"

namespace truss
{
namespace
{
volatile std::sig_atomic_t s_pressed = 0;

extern "C" void notePressed(int)
{
    s_pressed = 1;
}
} // namespace

InterruptSignal::InterruptSignal() : m_previous()
{
    struct sigaction action = {};
    action.sa_handler = notePressed;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, &m_previous);
}

InterruptSignal::~InterruptSignal()
{
    sigaction(SIGINT, &m_previous, nullptr);
}

bool InterruptSignal::take()
{
    const bool pressed = s_pressed != 0;
    s_pressed = 0;
    return pressed;
}
} // namespace truss

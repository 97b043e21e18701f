// SPDX-License-Identifier: MIT
// Receivers that throw.
#pragma once

#include <kel/bulletin.h>

#include "bomb.h"
#include "recorder.h"

#include <array>
#include <cstddef>
#include <string>
#include <utility>

/// Five receivers of everything; the bomb is called by each.
struct Audience
{
    explicit Audience(Bomb& bomb)
    {
        for (Recorder& receiver : receivers)
        {
            receiver.during = [this, &bomb](const Heard& message)
            {
                ++heard;
                last = message.operation;
                bomb.call();
            };
        }
    }

    void observe(Bulletin& bulletin)
    {
        for (Recorder& receiver : receivers)
            receiver.observe(bulletin);
    }

    std::size_t takeHeard() { return std::exchange(heard, 0); }

    std::size_t heard = 0;
    std::string last;
    std::array<Recorder, 5> receivers;
};

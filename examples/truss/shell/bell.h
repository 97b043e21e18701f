// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

#include <kel/sound.h>

namespace truss
{
/// Rings the terminal's bell when work is finished, if that was asked for.
class Bell : public Sound
{
public:
    void play(Event event, bool flag) override;
    /// Off at first.
    void setOn(bool on) override { m_on = on; }

private:
    bool m_on = false;
};
} // namespace truss

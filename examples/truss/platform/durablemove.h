// SPDX-License-Identifier: MIT
// truss: platform
#pragma once

namespace Kel
{
class File;
}

namespace truss
{
/// Moves a new file into the place of an old one so that the name stands for a whole file at every moment, the old one
/// or the new one, even if the power fails.
///
/// The new file's bytes are on the disk before it gets the name, and the name is on the disk before the move is
/// reported as done. The new file takes over the old one's mode, owner and group, as far as the user may give files to
/// them; access lists and extended attributes it does not take over.
class DurableMove
{
public:
    DurableMove() = delete;

    /// `to` need not exist. A directory or a device there is refused; a symbolic link is replaced itself. After a
    /// Problem both files are as they were, but for one: that the new file is in its place and may not survive a loss
    /// of power.
    static void perform(const Kel::File& from, const Kel::File& to);
};
} // namespace truss

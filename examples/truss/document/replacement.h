// SPDX-License-Identifier: MIT
// truss: document
#pragma once

#include <kel/file_kel.h>

namespace truss
{
/// The replacing of an old file by a new one, while this object lives.
///
/// FileWriter::close asks the platform to delete the old file and then to move the new one into its place; between the
/// two there would be no file. The platform therefore asks here whether a deletion is the first half of a replacement.
/// Then it leaves the old file to the move, which replaces it in one step or not at all.
///
/// One lives at a time.
class Replacement
{
public:
    explicit Replacement(const Kel::File& target);
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement();

    /// Whether the file of that path is being replaced.
    static bool isOf(const Kel::File& file);

private:
    static const Replacement* s_active;

    Kel::File m_target;
};
} // namespace truss

// SPDX-License-Identifier: MIT
// truss: exchange
#pragma once

#include <kel/autofiledelete.h>
#include <kel/file_kel.h>

#include <fstream>

namespace truss
{
/// Writes a text or picture file so that the file is either the old one or the whole new one: into a temporary file
/// beside it, which takes its place in close(). Without close() the temporary file is deleted.
///
/// Documents have the library's FileWriter for this.
class OutputFile
{
public:
    /// Fails with the Problem of Kel::File::open when the temporary file cannot be written.
    explicit OutputFile(const Kel::File& target);

    std::ostream& getOut() { return m_out; }

    /// Puts the file in its place; fails with a Problem when anything could not be written.
    void close();

private:
    Kel::File m_target;
    Kel::File m_temporary;
    std::ofstream m_out;
    AutoFileDelete m_guard; // after the stream, so that the file is deleted only once it is open
};
} // namespace truss

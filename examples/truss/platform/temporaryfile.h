// SPDX-License-Identifier: MIT
// truss: platform
#pragma once

#include <kel/autofiledelete.h>
#include <kel/file_kel.h>

namespace truss
{
/// An empty file of its own in the folder for temporary files, which is deleted with this object.
class TemporaryFile
{
public:
    TemporaryFile();

    const Kel::File& getFile() const { return m_file; }

    /// Leaves the file to the caller.
    Ztring release() { return m_guard.release().getPath(); }

private:
    Kel::File m_file;
    AutoFileDelete m_guard;
};
} // namespace truss

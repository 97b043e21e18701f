// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/file_kel.h>
#include <kel/kelapi.h>

/// Deletes a file, through the application's Platform, when it goes out of scope.
class KEL_API AutoFileDelete
{
public:
    explicit AutoFileDelete(const Kel::File& file);
    /// Asks for a quiet deletion, unless the path is empty. What the platform throws is dropped.
    ~AutoFileDelete();
    AutoFileDelete(const AutoFileDelete&) = delete;
    AutoFileDelete& operator=(const AutoFileDelete&) = delete;

    /// Gives the file up: it is returned and will not be deleted.
    Kel::File release();

private:
    Kel::File m_file;
};

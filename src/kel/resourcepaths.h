// SPDX-License-Identifier: MIT
// libkel: Application services
#pragma once

#include <kel/array.h>
#include <kel/ztring.h>

/// The directories where the application looks for its resource files, in the order in which to look.
class KEL_API ResourcePaths : public Array<Ztring>
{
public:
    /// An empty list with room for five.
    ResourcePaths();

    ResourcePaths(const ResourcePaths&) = delete;
    ResourcePaths& operator=(const ResourcePaths&) = delete;

    /// The list that the process uses, empty at first; it lives until exit.
    static ResourcePaths* getSingleton();

    /// Appends a directory; does nothing when the very same text (case counts) is in the list.
    void addPath(const Ztring& directory);
};

// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/resourcepaths.h>

#include <algorithm>

ResourcePaths::ResourcePaths()
{
    reserve(5);
}

ResourcePaths* ResourcePaths::getSingleton()
{
    static ResourcePaths s_paths;
    return &s_paths;
}

void ResourcePaths::addPath(const Ztring& directory)
{
    if (std::find(begin(), end(), directory) == end())
        push_back(directory);
}

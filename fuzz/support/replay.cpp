// SPDX-License-Identifier: MIT
// Calls a fuzz target once with each of the files, or of the files in the folders, that are named as arguments.
#include "fuzzing.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace
{
std::size_t s_count = 0;

void replay(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++s_count;
}
} // namespace

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i)
    {
        if (!std::filesystem::is_directory(argv[i]))
            replay(argv[i]);
        else
            for (const auto& entry : std::filesystem::directory_iterator(argv[i]))
                replay(entry.path());
    }
    std::printf("%zu inputs\n", s_count);
    return s_count > 0 ? 0 : 1;
}

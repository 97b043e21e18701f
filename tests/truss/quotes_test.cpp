// SPDX-License-Identifier: MIT
// What the documents quote from the example application stands there, so it is built and tested.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

namespace
{
const std::filesystem::path docs = std::filesystem::path(TRUSS_TESTS) / "../../docs";

std::string read(const std::filesystem::path& path)
{
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

/// The path in the first link of a line, relative to the documents.
std::string findLink(const std::string& line)
{
    const std::size_t begin = line.find("](");
    return begin == std::string::npos ? "" : line.substr(begin + 2, line.find(')', begin) - begin - 2);
}

TEST(Quotes, AreInTheFilesThatTheLineBeforeThemNames)
{
    std::istringstream page(read(docs / "saving.md"));
    std::string file;
    unsigned count = 0;
    for (std::string line; std::getline(page, line);)
    {
        if (line != "```cpp")
        {
            if (!line.empty())
                file = findLink(line);
            continue;
        }
        ASSERT_FALSE(file.empty()) << "a quote without the name of its file";
        std::string quote;
        while (std::getline(page, line) && line != "```")
            quote += line + '\n';
        EXPECT_NE(read(docs / file).find('\n' + quote), std::string::npos) << file << " does not hold:\n" << quote;
        ++count;
    }
    EXPECT_GE(count, 4u);
}
} // namespace

// SPDX-License-Identifier: MIT
// What the documents quote from the examples stands there, so it is built and tested.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

namespace
{
const std::filesystem::path root = std::filesystem::path(TRUSS_TESTS) / "../..";

std::string read(const std::filesystem::path& path)
{
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

/// The path in the first link of a line, relative to the document.
std::string findLink(const std::string& line)
{
    const std::size_t begin = line.find("](");
    return begin == std::string::npos ? "" : line.substr(begin + 2, line.find(')', begin) - begin - 2);
}

/// The number of quotes in a document.
unsigned checkQuotes(const std::filesystem::path& document)
{
    std::istringstream page(read(document));
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
        EXPECT_FALSE(file.empty()) << "a quote without the name of its file";
        std::string quote;
        while (std::getline(page, line) && line != "```")
            quote += line + '\n';
        EXPECT_NE(read(document.parent_path() / file).find('\n' + quote), std::string::npos)
            << file << " does not hold:\n"
            << quote;
        ++count;
    }
    return count;
}

TEST(Quotes, AreInTheFilesThatTheLineBeforeThemNames)
{
    EXPECT_GE(checkQuotes(root / "docs/saving.md"), 4u);
    EXPECT_EQ(checkQuotes(root / "README.md"), 2u);
}
} // namespace

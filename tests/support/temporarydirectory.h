// SPDX-License-Identifier: MIT
// A directory for real files that goes when the test ends.
#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <system_error>

/// A new empty directory, named for the running test and the process, which is removed with all that is in it.
class TemporaryDirectory
{
public:
    TemporaryDirectory() : m_path(makeUniquePath()) { std::filesystem::create_directories(m_path); }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    ~TemporaryDirectory()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path& getPath() const { return m_path; }

    /// The path of a file in the directory, which need not exist.
    std::string operator/(const std::string& name) const { return (m_path / name).string(); }

    /// Makes a file with the bytes in the directory and returns its path.
    std::string write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream file(*this / name, std::ios::binary);
        file << bytes;
        EXPECT_TRUE(file.flush()) << name;
        return *this / name;
    }

    /// All bytes of a file in the directory.
    std::string read(const std::string& name) const
    {
        std::ifstream file(*this / name, std::ios::binary);
        EXPECT_TRUE(file) << name;
        return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }

    bool has(const std::string& name) const { return std::filesystem::exists(m_path / name); }

private:
    static std::filesystem::path makeUniquePath()
    {
        static unsigned count = 0;
        std::ostringstream out;
        out << "kel-" << getpid() << '-' << ++count;
        if (const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info())
            out << '-' << test->test_suite_name() << '-' << test->name();
        std::string name = out.str();
        for (char& c : name)
            if (c == '/')
                c = '-';
        return std::filesystem::temp_directory_path() / name;
    }

    std::filesystem::path m_path;
};

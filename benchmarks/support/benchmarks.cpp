// SPDX-License-Identifier: MIT
// libkel: benchmarks
#include "benchmarks.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <numeric>
#include <random>
#include <stdexcept>
#include <string_view>

#include <unistd.h>

namespace
{
struct Entry
{
    std::string m_name;
    std::vector<int64_t> m_sizes;
    bench::Body m_body;
};

struct Check
{
    std::string m_name;
    std::function<void()> m_check;
};

std::vector<Entry>& entries()
{
    static std::vector<Entry> all;
    return all;
}

std::vector<Check>& checks()
{
    static std::vector<Check> all;
    return all;
}

bool s_once = false;
std::filesystem::path s_folder;

/// Makes a folder of its own unless one was given, and removes it at the end.
class Folder
{
public:
    explicit Folder(const std::string& given) : m_temporary(given.empty())
    {
        if (m_temporary)
            s_folder = std::filesystem::temp_directory_path() / ("kel-benchmarks-" + std::to_string(getpid()));
        else
            s_folder = given;
        std::filesystem::create_directories(s_folder);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder()
    {
        std::error_code ignored;
        if (m_temporary)
            std::filesystem::remove_all(s_folder, ignored);
    }

private:
    bool m_temporary;
};

/// Takes an option of our own out of the command line; its value, or the option itself when it has none.
std::string takeOption(std::vector<char*>& args, std::string_view option)
{
    auto matches = [option](const char* arg) { return std::string_view(arg).starts_with(option); };
    const auto found = std::ranges::find_if(args, matches);
    if (found == args.end())
        return {};
    const std::string value(option.ends_with('=') ? *found + option.size() : *found);
    args.erase(found);
    return value;
}

void registerAll()
{
    for (const Entry& entry : entries())
    {
        auto* benchmark = benchmark::RegisterBenchmark(entry.m_name.c_str(), entry.m_body);
        for (const int64_t size : entry.m_sizes)
            benchmark->Arg(size);
        if (s_once)
            benchmark->Iterations(1);
    }
}

int runChecks()
{
    int failures = 0;
    for (const Check& check : checks())
    {
        try
        {
            check.m_check();
            std::printf("ok      %s\n", check.m_name.c_str());
        }
        catch (const std::exception& e)
        {
            std::printf("FAILED  %s: %s\n", check.m_name.c_str(), e.what());
            ++failures;
        }
    }
    return failures == 0 ? 0 : 1;
}
} // namespace

bool bench::add(const std::string& row, const std::string& contender, const std::vector<int64_t>& sizes,
                const Body& body)
{
    entries().push_back({row + "/" + contender, sizes, body});
    return true;
}

bool bench::addCheck(const std::string& name, const std::function<void()>& check)
{
    checks().push_back({name, check});
    return true;
}

bool bench::runsOnce()
{
    return s_once;
}

const std::filesystem::path& bench::folder()
{
    return s_folder;
}

std::vector<uint32_t> bench::shuffled(size_t count)
{
    std::vector<uint32_t> order(count);
    std::iota(order.begin(), order.end(), 0u);
    std::shuffle(order.begin(), order.end(), std::mt19937_64(20));
    return order;
}

std::string bench::contents(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw std::runtime_error("cannot open " + path.string());
    std::string bytes(std::filesystem::file_size(path), '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

int bench::run(int argc, char** argv)
{
    std::vector<char*> args(argv, argv + argc);
    s_once = !takeOption(args, "--once").empty();
    const bool checking = !takeOption(args, "--check").empty();
    const Folder folder(takeOption(args, "--folder="));

    if (checking)
        return runChecks();

    registerAll();
    int count = static_cast<int>(args.size());
    args.push_back(nullptr);
    benchmark::Initialize(&count, args.data());
    if (benchmark::ReportUnrecognizedArguments(count, args.data()))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

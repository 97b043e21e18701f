// SPDX-License-Identifier: MIT
// libkel: benchmarks
// A form body written by hand: bytes in a std::string, the file read in the same blocks.
#include "support/formrows.h"

#include <array>
#include <string_view>

namespace
{
constexpr std::string_view s_boundary = "----------ThIs_Is_tHe_bouNdaRY";
constexpr size_t s_blockSize = 4096;

class Form
{
public:
    void addField(std::string_view name, std::string_view value)
    {
        append({"--", s_boundary, "\r\nContent-Disposition: form-data; name=\"", name, "\"\r\n\r\n", value, "\r\n"});
    }

    void addFile(std::string_view name, std::string_view fileName, std::string_view type, const std::string& path)
    {
        append({"--", s_boundary, "\r\nContent-Disposition: form-data; name=\"", name, "\"; filename=\"", fileName,
                "\"\r\nContent-Type: ", type, "\r\n\r\n"});
        std::ifstream in(path, std::ios::binary);
        std::array<char, s_blockSize> block;
        while (in.read(block.data(), block.size()) || in.gcount() > 0)
            m_body.append(block.data(), static_cast<size_t>(in.gcount()));
        append({"\r\n"});
    }

    size_t size() const { return m_body.size(); }

private:
    void append(std::initializer_list<std::string_view> texts)
    {
        for (const std::string_view text : texts)
            m_body += text;
    }

    std::string m_body;
};

size_t build(const std::string& path)
{
    Form form;
    form.addField("title", "Report");
    form.addFile("model", "model.x", "application/octet-stream", path);
    return form.size();
}

const bool registered = bench::FormRows::add("std_string", build);
} // namespace

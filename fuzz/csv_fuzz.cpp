// SPDX-License-Identifier: MIT
// Fields of comma-separated values: what is written is read; what is read, written and read again is equal.
#include <kel/csv.h>
#include <kel/file_kel.h>

#include "support/fuzzing.h"

#include <sstream>
#include <string>
#include <vector>

namespace
{
using Fields = std::vector<std::string>;

const Csv& getCsv()
{
    static const Csv csv{Kel::File("")};
    return csv;
}

std::string write(const Fields& fields)
{
    std::ostringstream out;
    for (const std::string& field : fields)
        getCsv().writeElement(out, field);
    return out.str();
}

/// Reads as long as fields end in a separator.
Fields read(const std::string& line)
{
    std::istringstream in(line);
    Fields fields;
    for (std::string field; getCsv().readElement(in, field), in.good(); field.clear())
        fields.push_back(field);
    return fields;
}

/// The fields are joined as by any other program that quotes only what has to be.
std::string join(const Fields& fields)
{
    std::string line;
    for (const std::string& field : fields)
    {
        const bool isPlain = field.find_first_of("\",\n ") == std::string::npos;
        line += isPlain ? field + "," : write({field});
    }
    return line;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const std::string line = input.takeRest();
    const Fields parsed = read(line);
    EXPECT_PROPERTY(read(write(parsed)) == parsed);
    EXPECT_PROPERTY(read(join(parsed)) == parsed);

    Input again(data, size);
    Fields fields;
    while (!again.empty())
        fields.push_back(again.takePart());
    EXPECT_PROPERTY(read(write(fields)) == fields);

    std::istringstream in(write({line}) + "rest");
    std::string field = "before ";
    getCsv().readElement(in, field);
    EXPECT_PROPERTY(field == "before " + line);
    EXPECT_PROPERTY(in.peek() == 'r');
    return 0;
}

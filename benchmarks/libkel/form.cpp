// SPDX-License-Identifier: MIT
// libkel: benchmarks
// A form body from a file; wide text, as the library's poster keeps it.
#include "support/formrows.h"

#include <kel/file_kel.h>
#include <kel/formdataposter.h>

namespace
{
size_t build(const std::string& path)
{
    FormDataPoster form;
    form.addField("title", "Report");
    form.addFile("model", "model.x", "application/octet-stream", Kel::File(path));
    return form.getBody().length();
}

const bool registered = bench::FormRows::add("libkel", build);
} // namespace

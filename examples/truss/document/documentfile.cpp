// SPDX-License-Identifier: MIT
// truss: document
#include "truss/document/documentfile.h"

#include "truss/document/replacement.h"
#include "truss/model/model.h"
#include "truss/model/openingguard.h"
#include "truss/text/text.h"

#include <kel/file_kel.h>
#include <kel/filereader.h>
#include <kel/filewriter.h>
#include <kel/interrupted.h>
#include <kel/reader.h>
#include <kel/translator.h>
#include <kel/writer.h>

#include <filesystem>
#include <istream>
#include <limits>
#include <ostream>
#include <system_error>

namespace truss
{
namespace
{
/// Whether a file ends as a save leaves it: what follows the last record may look to the reader like an end, too.
bool endsWithLine(std::istream& in)
{
    in.clear();
    return in.seekg(-1, std::ios_base::end).get() == '\n';
}

/// Whether the path is that of a folder, a device or a pipe.
bool isNoFile(const Kel::File& file)
{
    const std::filesystem::path path(file.getPath().toUtf8());
    std::error_code error;
    return std::filesystem::exists(path, error) && !std::filesystem::is_regular_file(path, error);
}
} // namespace

BulletinPtr<Model> DocumentFile::open(const Kel::File& file)
try
{
    if (isNoFile(file))
        file.throwOpenFailed();

    OpeningGuard guard;
    FileReader fileReader;
    Reader* const reader = fileReader.open(file, true);
    Serializable* const root = reader->perform();
    // The reader takes for the end whatever it cannot read on from, be it a failing disk.
    std::istream& in = reader->getIn();
    if (!in.eof() || in.bad() || !endsWithLine(in))
        Problem::throwProblem(Translator::tr("The file cannot be read to its end"));
    return guard.release(root); // refuses a file that holds another number of objects than the model counted
}
catch (Interrupted&)
{
    throw; // not a fault of the file
}
catch (Problem& problem)
{
    file.annotateRead(problem);
    throw;
}

void DocumentFile::save(Model& model, const Kel::File& file)
{
    const Kel::File target = followLink(file);
    if (isNoFile(target))
        target.throwWritingCorrupt();

    FileWriter fileWriter;
    Writer* const writer = fileWriter.open(target, true);
    std::ostream& out = writer->getOut();
    out.precision(std::numeric_limits<double>::max_digits10); // so that every number reads back exactly
    writer->writeObj(&model);
    // The library replaces the old file without a look at the stream, so a full disk has to be noticed here.
    out.flush();
    if (!out)
        target.throwWritingCorrupt();
    const Replacement replacement(target); // from here on the platform replaces where it is asked to delete and move
    fileWriter.close();
}

Kel::File DocumentFile::followLink(const Kel::File& file)
{
    const std::filesystem::path path(file.getPath().toUtf8());
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error))
        return file;
    const Ztring end = fromUtf8(std::filesystem::canonical(path, error).string());
    return end.empty() ? file : Kel::File(end); // a link that leads nowhere is replaced itself
}
} // namespace truss

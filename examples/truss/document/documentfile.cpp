// SPDX-License-Identifier: MIT
// truss: document
#include "truss/document/documentfile.h"

#include "truss/model/model.h"
#include "truss/model/openingguard.h"

#include <kel/file_kel.h>
#include <kel/filereader.h>
#include <kel/filewriter.h>
#include <kel/interrupted.h>
#include <kel/reader.h>
#include <kel/writer.h>

#include <limits>
#include <ostream>

namespace truss
{
BulletinPtr<Model> DocumentFile::open(const Kel::File& file)
try
{
    OpeningGuard guard;
    FileReader fileReader;
    return guard.release(fileReader.open(file, true)->perform());
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
    FileWriter fileWriter;
    Writer* const writer = fileWriter.open(file, true);
    std::ostream& out = writer->getOut();
    out.precision(std::numeric_limits<double>::max_digits10); // so that every number reads back exactly
    writer->writeObj(&model);
    // The library replaces the old file without a look at the stream, so a full disk has to be noticed here.
    out.flush();
    if (!out)
        file.throwWritingCorrupt();
    fileWriter.close();
}
} // namespace truss

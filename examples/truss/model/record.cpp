// SPDX-License-Identifier: MIT
// truss: model
#include "truss/model/record.h"

#include <kel/reader.h>
#include <kel/translator.h>
#include <kel/writer.h>
#include <kel/ztring.h>

#include <istream>
#include <string>

namespace truss
{
void Record::readEnd(Reader& reader)
{
    std::string rest;
    std::getline(reader.getIn(), rest);
    reader.checkValid();
    if (rest.find_first_not_of(' ') != std::string::npos)
        reader.throwError(Translator::tr("A record is longer than expected"));
}

void Record::write(Writer& writer, const Vector& vector)
{
    for (const double component : vector)
        writer.write(component);
}

void Record::read(Reader& reader, Vector& vector)
{
    for (double& component : vector)
        reader.read(component);
}
} // namespace truss

// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include "truss/model/vector.h"

class Reader;
class Writer;

namespace truss
{
/// What the records of all classes have in common.
///
/// The reader needs no line ends between records and stops quietly where the stream ends. A document that was cut off
/// just before its last line end would therefore pass for a whole one, so the objects ask for the line end themselves.
class Record
{
public:
    Record() = delete;

    /// Takes the rest of the record's line, which has to be blank and to have a line end; otherwise a Problem.
    static void readEnd(Reader& reader);

    static void write(Writer& writer, const Vector& vector);
    static void read(Reader& reader, Vector& vector);
};
} // namespace truss

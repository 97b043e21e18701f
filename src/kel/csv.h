// SPDX-License-Identifier: MIT
// libkel: Foundations
#pragma once

#include <kel/kelapi.h>

#include <iosfwd>
#include <string>

namespace Kel
{
class File;
}

/// Writes and reads single fields of a file of comma-separated values.
///
/// It is named for a file, which it does not use, and works on the streams that it is given. Lines are the caller's:
/// the writer puts a comma after every field, the last of a line included, and the caller writes the line end; the
/// reader ends a field at a comma or a line feed and does not tell which.
class KEL_API Csv
{
public:
    explicit Csv(const Kel::File& file);

    /// Writes the field between double quotes, those inside it doubled, and a comma.
    void writeElement(std::ostream& out, const std::string& field) const;

    /// Appends the next field to `field`. Outside quotes all spaces are dropped and a carriage return is kept. The end
    /// of the input ends the field too and leaves the stream failed.
    void readElement(std::istream& in, std::string& field) const;
};

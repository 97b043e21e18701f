// SPDX-License-Identifier: MIT
// truss: document
#pragma once

#include "truss/model/bulletinptr.h"

#include <kel/file_kel.h>

namespace truss
{
class Model;

/// What a save that did not end, since the program or the system did before, has left beside a document: the temporary
/// file. It may be whole, and is then newer than the document; the user decides what becomes of it.
class Leftover
{
public:
    /// Of the document in that file, which need not exist.
    explicit Leftover(const Kel::File& document);

    bool exists() const;
    /// Whether all of a document is there, which is found out by opening it.
    bool isWhole() const;
    /// Tells the user in the log that it exists, if it does, and whether it is whole. Changes no file.
    void report() const;

    /// Puts it in the place of the document and opens it. Unless it is whole it is refused with a Problem, and both
    /// files stay.
    BulletinPtr<Model> recover() const;

private:
    Kel::File m_document;
    Kel::File m_file;
};
} // namespace truss

// SPDX-License-Identifier: MIT
// truss: document
#pragma once

#include "truss/model/bulletinptr.h"

namespace Kel
{
class File;
}

namespace truss
{
class Model;

/// Saves the model as an object stream and opens it again.
class DocumentFile
{
public:
    DocumentFile() = delete;

    /// A new model with what the file holds. The file is refused as a whole, with a Problem that names it, when
    /// anything in it is not as it was saved or it cannot be read to its end; an interruption by the user passes
    /// through.
    static BulletinPtr<Model> open(const Kel::File& file);

    /// Saves through a temporary file, the path with ".tmp" appended. When anything fails the old file stays as it is,
    /// and the temporary file is deleted. A symbolic link stays one.
    static void save(Model& model, const Kel::File& file);

    /// The file that is replaced when a document is saved under that name: where it leads to, if it is a symbolic link.
    static Kel::File followLink(const Kel::File& file);
};
} // namespace truss

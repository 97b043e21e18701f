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
    /// anything in it is not as it was saved; an interruption by the user passes through.
    static BulletinPtr<Model> open(const Kel::File& file);

    /// Saves through a temporary file; when anything fails the old file stays as it is.
    static void save(Model& model, const Kel::File& file);
};
} // namespace truss

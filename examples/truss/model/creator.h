// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include "truss/model/openingguard.h"

#include <kel/serializablecreator.h>

#include <memory>

namespace truss
{
/// Makes the empty objects of one persistable class when a document is opened. One static creator for each class,
/// under the name that documents have for the class.
template <class T>
class Creator : public SerializableCreator
{
public:
    using SerializableCreator::SerializableCreator;

    Serializable* create() override
    {
        auto object = std::make_unique<T>();
        OpeningGuard::note(*object);
        return object.release();
    }
};
} // namespace truss

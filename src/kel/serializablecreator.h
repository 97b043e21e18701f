// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/kelapi.h>

#include <string>

class Serializable;

/// Makes empty objects of one persistable class; its name is what ties a stream to that class.
///
/// One creator exists for each class, usually as a static object of the module that defines the class, and
/// registers itself under its name in SerializableCreators. The name is unique in the process and must never
/// change once files exist. Reading ends a text at its first zero byte, so the name must have none.
///
///     class NodeCreator : public SerializableCreator
///     {
///     public:
///         NodeCreator() : SerializableCreator("Node") {}
///         Serializable* create() override { return new Node(); }
///     };
///     static NodeCreator s_creator;
///
/// A creator that registers itself while a SerializableCreators::Rollback is active is deleted if that rolls back: it
/// must have been made with `new`, and its module must not use it, nor delete it, afterwards.
class KEL_API SerializableCreator
{
public:
    /// Registers the creator under `name`, in the place of any earlier one of that name.
    explicit SerializableCreator(const std::string& name);
    /// Does not unregister: a creator must outlive the reading of streams, or be removed by a rollback.
    virtual ~SerializableCreator();
    SerializableCreator(const SerializableCreator&) = delete;
    SerializableCreator& operator=(const SerializableCreator&) = delete;

    /// A new object in its default state, owned by the caller; never null.
    virtual Serializable* create() = 0;

    /// The class name that is written into streams.
    const std::string& getName() const { return m_name; }

private:
    std::string m_name;
};

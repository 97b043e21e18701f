// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/array.h>
#include <kel/kelapi.h>

#include <map>
#include <string>

class SerializableCreator;

/// The process-wide registry in which readers find the creator of a class by its name.
///
/// It can change while the application runs. A loader of an optional module takes every registration back when
/// loading fails:
///
///     SerializableCreators::Rollback rollback(true);
///     load(module); // where `new NodeCreator` and others register themselves
///     rollback.clear();
class KEL_API SerializableCreators
{
public:
    class Rollback;

    /// Made on first use, so that creators can register during static initialisation in any order.
    static SerializableCreators& getSingleton();

    SerializableCreators() = default;
    ~SerializableCreators() = default;
    SerializableCreators(const SerializableCreators&) = delete;
    SerializableCreators& operator=(const SerializableCreators&) = delete;

    /// Registers a creator, noting the name in the active rollback. An earlier creator of that name is replaced
    /// without notice and stays alive. The creator is not owned, though `remove` deletes it.
    void add(const std::string& name, SerializableCreator* creator);

    /// The creator registered under exactly that name, or null.
    SerializableCreator* getCreator(const std::string& name) const;

    /// Makes a rollback the active one. It is not owned and must not be null: assertion "valid(rollback)".
    void set(Rollback* rollback);

    /// Ends the active rollback, then unregisters and deletes the creators of these names, in order.
    /// A name that is not registered (any more) is passed over; a creator of several names goes under all of them.
    void remove(const Array<std::string>& names);

private:
    void removeOne(const std::string& name);

    std::map<std::string, SerializableCreator*> m_creatorsByName;
    Rollback* m_rollback = nullptr;
};

/// Takes back every registration made while it was active, unless it is cleared first.
///
/// What it takes back it deletes: creators that register themselves meanwhile must have been made with `new`, and
/// belong to the registry until the rollback is cleared.
///
/// It lists the names in the order they were registered. Destroying any rollback, also a cleared or a disabled
/// one, ends the active one: keep one alive at a time.
class KEL_API SerializableCreators::Rollback : public Array<std::string>
{
public:
    /// An enabled rollback makes itself the active one. A disabled one stays empty.
    explicit Rollback(bool enable);
    /// Unregisters and deletes the creators of the names listed.
    ~Rollback() override;
    Rollback(const Rollback&) = delete;
    Rollback& operator=(const Rollback&) = delete;

    void add(const std::string& name);

    /// Forgets the names and leaves the registry as it is, which commits the registrations.
    using Array::clear;
};

// SPDX-License-Identifier: MIT
// Hooks that throw while a file is saved or opened: the exception arrives as it is, the file on disk stays as it was,
// nothing is lost, and the same saving or opening succeeds afterwards.
#include <kel/bulletinboard.h>
#include <kel/file_kel.h>
#include <kel/filereader.h>
#include <kel/filewriter.h>
#include <kel/reader.h>
#include <kel/status.h>
#include <kel/version.h>
#include <kel/versions.h>
#include <kel/writer.h>

#include "support/bomb.h"
#include "support/failingallocation.h"
#include "support/installed.h"
#include "support/persistablebase.h"
#include "support/temporarydirectory.h"
#include "support/testplatform.h"
#include "support/tickingclock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace
{
/// What the library calls. Begin is before, End after what the hook does.
enum class Hook
{
    IsWritable,
    GetCreator,
    WriteBegin,
    WriteEnd,
    VersionBegin,
    VersionEnd,
    Create,
    ReadBegin,
    ReadEnd,
    FixupBegin,
    FixupEnd,
    AddBegin,
    AddEnd,
    CanDelete,
    PreDelete,
    SetStatus,
    UpdateEvents,
};

Bomb s_bomb;
Hook s_hook = Hook::IsWritable; ///< the one that calls the bomb

void call(Hook hook)
{
    if (hook == s_hook)
        s_bomb.call();
}

template <class T>
class HookedCreator : public SerializableCreator
{
public:
    using SerializableCreator::SerializableCreator;
    Serializable* create() override
    {
        auto object = std::make_unique<T>();
        call(Hook::Create);
        return object.release();
    }
};

/// A link of a chain, which waits with its fixup once.
class Link : public Bulletin, public Persistable
{
public:
    bool isWritable() override
    {
        call(Hook::IsWritable);
        return true;
    }

    SerializableCreator* getCreator() override
    {
        call(Hook::GetCreator);
        return &s_creator;
    }

    void write(Writer& writer) override
    {
        call(Hook::WriteBegin);
        writer.write(name);
        writer.writeObj(dynamic_cast<Serializable*>(next));
        call(Hook::WriteEnd);
    }

    void read(Reader& reader) override
    {
        call(Hook::ReadBegin);
        reader.read(name).read(next);
        if (s_isSkipped)
            throw Reader::Skip();
        call(Hook::ReadEnd);
    }

    bool fixup(Reader& reader) override
    {
        call(Hook::FixupBegin);
        if (!std::exchange(m_hasWaited, true))
            return false;
        reader.fix(next);
        call(Hook::FixupEnd);
        return true;
    }

    bool canDelete() override
    {
        call(Hook::CanDelete);
        return true;
    }

    void preDelete() override
    {
        call(Hook::PreDelete);
        Bulletin::preDelete();
    }

    static inline HookedCreator<Link> s_creator{"Link"};
    static inline bool s_isSkipped = false;

    Ztring name;
    Bulletin* next = nullptr;

private:
    bool m_hasWaited = false;
};

/// The root, which holds links.
class Chain : public BulletinBoard, public Persistable
{
public:
    SerializableCreator* getCreator() override
    {
        call(Hook::GetCreator);
        return &s_creator;
    }

    void write(Writer& writer) override
    {
        call(Hook::WriteBegin);
        writer.writeBulletins(*this);
        call(Hook::WriteEnd);
    }

    void read(Reader& reader) override
    {
        call(Hook::ReadBegin);
        reader.readBulletins(*this);
        call(Hook::ReadEnd);
    }

    bool fixup(Reader& reader) override
    {
        call(Hook::FixupBegin);
        reader.fixBulletins(*this);
        call(Hook::FixupEnd);
        return true;
    }

    using BulletinBoard::add;
    void add(Bulletin* obj) override
    {
        call(Hook::AddBegin);
        BulletinBoard::add(obj);
        call(Hook::AddEnd);
    }

    static inline HookedCreator<Chain> s_creator{"Chain"};

private:
    void disown() override { clear(); }
};

class HookedVersion : public Version
{
public:
    HookedVersion() : Version(1, 0, 0, getStaticKey()) {}

    static const BulletinKey& getStaticKey()
    {
        static const BulletinKey s_key("HookedVersion");
        return s_key;
    }

    void write(Writer& writer) override
    {
        call(Hook::VersionBegin);
        Version::write(writer);
        call(Hook::VersionEnd);
    }
};

class HookedStatus : public Status
{
public:
    void setStatus(const Ztring&) override { call(Hook::SetStatus); }
    void setStatus(const Ztring&, int) override { call(Hook::SetStatus); }
    void updateEvents(int) override { call(Hook::UpdateEvents); }
};

constexpr std::size_t s_members = 3;
/// The chain, its members, and a last link that is on no board.
constexpr std::size_t s_objects = 1 + s_members + 1;

class ThrowingHooks : public testing::Test
{
protected:
    ThrowingHooks()
    {
        Versions::getSingleton().adopt(std::make_unique<HookedVersion>());
        // Every check is an update.
        status.setUpdateInterval(0);
        // What lives as long as the process is made first.
        write("old");
        read();
        Persistable::deleteAll();
    }

    ~ThrowingHooks() override
    {
        s_bomb.disarm();
        Link::s_isSkipped = false;
        Persistable::deleteAll();
        Bulletin::destroy(Versions::getSingleton().removeByKey(HookedVersion::getStaticKey()), true);
    }

    static Chain* makeChain(const std::string& name)
    {
        auto* const chain = new Chain;
        Bulletin* next = nullptr;
        for (std::size_t i = s_members + 1; i > 0; --i)
        {
            auto* const link = new Link;
            link->name = name + " of a link that is number " + std::to_string(i);
            link->next = std::exchange(next, link);
            if (i <= s_members)
                chain->add(link);
        }
        return chain;
    }

    static std::string describe(const Chain& chain)
    {
        std::string text;
        for (const auto& [number, member] : chain)
        {
            for (const auto* link = dynamic_cast<const Link*>(member); link; link = dynamic_cast<Link*>(link->next))
                text += link->name.toUtf8() + ", ";
            text += '\n';
        }
        return text;
    }

    Kel::File getFile() const { return Ztring(directory / "model"); }

    void save(Chain& chain)
    {
        FileWriter writer;
        writer.open(getFile(), true)->writeObj(&chain);
        writer.close();
    }

    /// Saves a new chain, and returns its description.
    std::string write(const std::string& name)
    {
        Chain* const chain = makeChain(name);
        save(*chain);
        std::string description = describe(*chain);
        Persistable::deleteAll();
        return description;
    }

    const Chain& open()
    {
        FileReader reader;
        return dynamic_cast<const Chain&>(*reader.open(getFile(), true)->perform());
    }

    /// Opens the file, and returns the description of what it holds.
    std::string read()
    {
        std::string description = describe(open());
        EXPECT_EQ(Persistable::getCount(), getCountWhenOpen());
        Persistable::deleteAll();
        return description;
    }

    /// Acts with the hook throwing in its first call, its second, ... until there is no further call, for each kind.
    /// `check` gets the number of the call that threw, 0 for none, and has to delete what there is then. Returns the
    /// number of calls.
    std::size_t throwFrom(Hook hook, const std::function<void()>& act, const std::function<void(std::size_t)>& check)
    {
        std::size_t calls = 0;
        for (const Kind kind : s_kinds)
        {
            bool hasThrown = true;
            for (std::size_t number = 1; hasThrown && !HasFailure(); ++number)
            {
                SCOPED_TRACE(testing::Message()
                             << getName(kind) << " at call " << number << " of hook " << static_cast<int>(hook));
                std::exchange(platform->calls, {});
                const std::size_t before = FailingAllocation::getLiveBlocks();
                s_hook = hook;
                s_bomb.arm(number, kind);
                {
                    const std::string caught = caughtBy(act);
                    hasThrown = !s_bomb.isArmed();
                    s_bomb.disarm();
                    EXPECT_EQ(caught, hasThrown ? getName(kind) : s_nothing);
                    check(hasThrown ? number : 0);
                }
                std::exchange(platform->calls, {});
                EXPECT_EQ(Persistable::getCount(), 0u);
                EXPECT_EQ(FailingAllocation::getLiveBlocks(), before);
                calls = number - 1;
            }
        }
        return calls;
    }

    /// Lets the hook throw while a chain is saved in the place of another.
    std::size_t throwFromSaving(Hook hook)
    {
        write("old");
        std::string old = directory.read("model");
        Chain* chain = nullptr;
        return throwFrom(
            hook,
            [&]
            {
                chain = makeChain("new");
                save(*chain);
            },
            [&](std::size_t number)
            {
                if (number > 0)
                {
                    EXPECT_EQ(directory.read("model"), old);
                }
                EXPECT_FALSE(directory.has("model.tmp"));
                EXPECT_EQ(Persistable::getCount(), s_objects);
                save(*chain);
                const std::string description = describe(*chain);
                Persistable::deleteAll();
                EXPECT_EQ(read(), description);
                write("old");
                directory.read("model").swap(old);
            });
    }

    /// Lets the hook throw while the file is opened. `getCount` says how many objects there are when the call with that
    /// number throws.
    std::size_t throwFromOpening(Hook hook, const std::function<std::size_t(std::size_t)>& getCount)
    {
        const std::string description = read();
        const std::string file = directory.read("model");
        return throwFrom(
            hook, [this] { open(); },
            [&](std::size_t number)
            {
                EXPECT_EQ(Persistable::getCount(), number > 0 ? getCount(number) : getCountWhenOpen());
                Persistable::deleteAll();
                EXPECT_EQ(directory.read("model"), file);
                EXPECT_EQ(read(), description);
            });
    }

    static std::size_t getCountWhenOpen() { return Link::s_isSkipped ? 1 : s_objects; }

    HookedStatus status;
    Installed<TestPlatform> platform;
    TemporaryDirectory directory;
};

std::size_t getAll(std::size_t)
{
    return s_objects;
}

/// The number of objects that there are when one of each has been called, the one that throws among them.
std::size_t getCalled(std::size_t number)
{
    return std::min(number, s_objects);
}
} // namespace

TEST_F(ThrowingHooks, ObjectThatFailsToBeSavedLeavesTheOldFile)
{
    EXPECT_EQ(throwFromSaving(Hook::IsWritable), s_members);
    for (const Hook hook : {Hook::GetCreator, Hook::WriteBegin, Hook::WriteEnd})
        EXPECT_EQ(throwFromSaving(hook), s_objects);
}

TEST_F(ThrowingHooks, VersionOrStatusThatFailsWhileSavingLeavesTheOldFile)
{
    for (const Hook hook : {Hook::VersionBegin, Hook::VersionEnd, Hook::SetStatus})
        EXPECT_EQ(throwFromSaving(hook), 1u);
    EXPECT_EQ(throwFromSaving(Hook::UpdateEvents), s_objects);
}

TEST_F(ThrowingHooks, FileWriterWhoseOpeningFailedIsAsNew)
{
    for (const Hook hook : {Hook::VersionBegin, Hook::VersionEnd, Hook::SetStatus})
    {
        forEach(1,
                [&](std::size_t call, Kind kind)
                {
                    Chain* const chain = makeChain("new");
                    FileWriter writer;
                    s_hook = hook;
                    s_bomb.arm(call, kind);
                    EXPECT_EQ(caughtBy([&] { writer.open(getFile(), true); }), getName(kind));
                    EXPECT_FALSE(directory.has("model.tmp"));
                    writer.open(getFile(), true)->writeObj(chain);
                    writer.close();
                    const std::string description = describe(*chain);
                    Persistable::deleteAll();
                    EXPECT_EQ(read(), description);
                });
    }
}

TEST_F(ThrowingHooks, ObjectThatFailsToBeReadLeavesTheFileToBeOpenedAgain)
{
    EXPECT_EQ(throwFromOpening(Hook::Create, [](std::size_t number) { return number - 1; }), s_objects);
    EXPECT_EQ(throwFromOpening(Hook::ReadBegin, getCalled), s_objects);
    EXPECT_EQ(throwFromOpening(Hook::ReadEnd, getCalled), s_objects);
}

TEST_F(ThrowingHooks, ObjectThatFailsToBeFixedLeavesTheFileToBeOpenedAgain)
{
    // Links are called twice.
    EXPECT_EQ(throwFromOpening(Hook::FixupBegin, getAll), 2 * s_objects - 1);
    EXPECT_EQ(throwFromOpening(Hook::FixupEnd, getAll), s_objects);
    EXPECT_EQ(throwFromOpening(Hook::AddBegin, getAll), s_members);
    EXPECT_EQ(throwFromOpening(Hook::AddEnd, getAll), s_members);
}

TEST_F(ThrowingHooks, StatusThatFailsWhileOpeningLeavesTheFileToBeOpenedAgain)
{
    // When the root is read, and when all are.
    EXPECT_EQ(throwFromOpening(Hook::SetStatus, [](std::size_t number) { return number == 1 ? 1 : s_objects; }), 2u);
    // After each object that is read, and after each that is fixed.
    EXPECT_EQ(throwFromOpening(Hook::UpdateEvents, getCalled), 2 * s_objects);
}

TEST_F(ThrowingHooks, SkippedObjectThatFailsToGoIsLeftWithTheOthers)
{
    Link::s_isSkipped = true;
    for (const Hook hook : {Hook::CanDelete, Hook::PreDelete})
        EXPECT_EQ(throwFromOpening(hook, [](std::size_t) { return 2; }), s_members + 1);
}

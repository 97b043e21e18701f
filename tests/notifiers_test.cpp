// SPDX-License-Identifier: MIT
// All kinds of message and the receivers that listen to them.
#include <kel/addednotifier.h>
#include <kel/changednotifier.h>
#include <kel/deletednotifier.h>
#include <kel/killednotifier.h>
#include <kel/notifier.h>
#include <kel/preresurrectednotifier.h>
#include <kel/removednotifier.h>
#include <kel/resurrectednotifier.h>

#include "support/recorder.h"

#include <gtest/gtest.h>

#include <memory>
#include <typeinfo>

namespace
{
BulletinBoard& board()
{
    static BulletinBoard obj;
    return obj;
}

Bulletin& first()
{
    static Bulletin obj;
    return obj;
}

Bulletin& second()
{
    static Bulletin obj;
    return obj;
}

struct Message
{
    std::unique_ptr<Notifier> notifier;
    Heard heard;
};

std::vector<Message> allMessages()
{
    std::vector<Message> messages;
    messages.push_back({std::make_unique<AddedNotifier>(board(), first()), {"added", &board(), &first()}});
    messages.push_back({std::make_unique<ChangedNotifier>(first(), second()), {"changed", &first(), &second()}});
    messages.push_back({std::make_unique<DeletedNotifier>(first()), {"deleted", &first()}});
    messages.push_back({std::make_unique<KilledNotifier>(first()), {"killed", &first()}});
    messages.push_back({std::make_unique<PreResurrectedNotifier>(first()), {"preResurrected", &first()}});
    messages.push_back({std::make_unique<RemovedNotifier>(board(), first()), {"removed", &board(), &first()}});
    messages.push_back({std::make_unique<ResurrectedNotifier>(first()), {"resurrected", &first()}});
    return messages;
}

/// Listens to one kind of message only.
class AddedOnly : public Receiver, public AddedReceiver
{
public:
    void added(Bulletin& /*board*/, Bulletin& /*obj*/) override { ++count; }

    int count = 0;
};

class Deaf : public Receiver
{
};

} // namespace

TEST(Notifiers, ReachTheMatchingReceiverWithTheirBulletins)
{
    for (const Message& message : allMessages())
    {
        Recorder recorder;
        message.notifier->transmitTo(recorder);
        EXPECT_EQ(recorder.heard, std::vector<Heard>{message.heard});
    }
}

TEST(Notifiers, AreIgnoredByReceiversOfOtherKinds)
{
    for (const Message& message : allMessages())
    {
        AddedOnly receiver;
        Deaf deaf;
        message.notifier->transmitTo(receiver);
        EXPECT_NO_THROW(message.notifier->transmitTo(deaf));
        EXPECT_EQ(receiver.count, message.heard.operation == "added" ? 1 : 0) << message.heard.operation;
    }
}

TEST(Notifiers, OfNoKindReachNobody)
{
    Recorder recorder;
    Notifier().transmitTo(recorder);
    EXPECT_TRUE(recorder.heard.empty());
}

TEST(Notifiers, CanBeSentTwiceAndCopied)
{
    const DeletedNotifier notifier(first());
    DeletedNotifier copy(notifier);
    Recorder recorder;
    copy.transmitTo(recorder);
    copy.transmitTo(recorder);
    EXPECT_EQ(recorder.heard, (std::vector<Heard>{{"deleted", &first()}, {"deleted", &first()}}));
}

TEST(Notifiers, PassOnWhatAReceiverThrows)
{
    Recorder recorder([](const Heard& message) { throw message; });
    for (const Message& message : allMessages())
        EXPECT_THROW(message.notifier->transmitTo(recorder), Heard);
}

TEST(ChangedNotifier, WithoutADescriptionCarriesTheSameEmptyBulletinEveryTime)
{
    Recorder recorder;
    ChangedNotifier(first()).transmitTo(recorder);
    ChangedNotifier(second()).transmitTo(recorder);
    ASSERT_EQ(recorder.heard.size(), 2u);
    EXPECT_EQ(recorder.heard[0].first, &first());
    EXPECT_EQ(recorder.heard[1].first, &second());
    const Bulletin* const placeholder = recorder.heard[0].second;
    ASSERT_NE(placeholder, nullptr);
    EXPECT_EQ(recorder.heard[1].second, placeholder);
    EXPECT_EQ(typeid(*placeholder), typeid(Bulletin));
    EXPECT_EQ(placeholder->getKey().getName(), "");
}

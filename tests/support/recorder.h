// SPDX-License-Identifier: MIT
// A receiver of every kind of message that records what it hears.
#pragma once

#include <kel/addedreceiver.h>
#include <kel/bulletinboard.h>
#include <kel/changedreceiver.h>
#include <kel/deletedreceiver.h>
#include <kel/killedreceiver.h>
#include <kel/preresurrectedreceiver.h>
#include <kel/receiver.h>
#include <kel/removedreceiver.h>
#include <kel/resurrectedreceiver.h>

#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

/// One message: the operation that was called and its arguments in their order. The bulletins may be gone since.
struct Heard
{
    std::string operation;
    const Bulletin* first = nullptr;
    const Bulletin* second = nullptr;

    bool operator==(const Heard&) const = default;
};

inline std::ostream& operator<<(std::ostream& os, const Heard& heard)
{
    os << heard.operation << '(' << heard.first;
    if (heard.second != nullptr)
        os << ", " << heard.second;
    return os << ')';
}

/// Hears all seven kinds of message and keeps them in order.
///
///     Recorder recorder;
///     recorder.observe(board);
///     board.add(obj);
///     EXPECT_EQ(recorder.heard, (std::vector<Heard>{{"added", &board, obj}}));
///
/// `during` runs inside each call, after the message was recorded: it may change, destroy or throw. Nothing of the
/// recorder is touched after it, so it may even destroy the recorder; it is copied beforehand.
class Recorder : public Receiver,
                 public AddedReceiver,
                 public ChangedReceiver,
                 public DeletedReceiver,
                 public KilledReceiver,
                 public PreResurrectedReceiver,
                 public RemovedReceiver,
                 public ResurrectedReceiver
{
public:
    Recorder() = default;
    explicit Recorder(std::function<void(const Heard&)> hook) : during(std::move(hook)) {}

    std::vector<Heard> heard;
    std::function<void(const Heard&)> during;

    /// The operations heard, in order.
    std::vector<std::string> operations() const
    {
        std::vector<std::string> names;
        for (const Heard& message : heard)
            names.push_back(message.operation);
        return names;
    }

    void added(Bulletin& board, Bulletin& obj) override { record({"added", &board, &obj}); }
    void changed(Bulletin& what, const Bulletin& how) override { record({"changed", &what, &how}); }
    void deleted(Bulletin& obj) override { record({"deleted", &obj}); }
    void killed(Bulletin& obj) override { record({"killed", &obj}); }
    void preResurrected(Bulletin& obj) override { record({"preResurrected", &obj}); }
    void removed(BulletinBoard& board, Bulletin& obj) override { record({"removed", &board, &obj}); }
    void resurrected(Bulletin& obj) override { record({"resurrected", &obj}); }

private:
    void record(const Heard& message)
    {
        heard.push_back(message);
        if (const auto hook = during)
            hook(message);
    }
};

// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/bulletin.h>
#include <kel/kelapi.h>

#include <memory>

class NumberTable;
class Writer;

/// Numbers the anonymous keys of one stream, 0, 1, 2 ... in the order in which they are first written.
///
/// It comes into being on the writer's board with the first anonymous key and dies with the writer.
class KEL_API KeyWriter : public Bulletin
{
public:
    KeyWriter();
    ~KeyWriter() override;
    KeyWriter(const KeyWriter&) = delete;
    KeyWriter& operator=(const KeyWriter&) = delete;

    /// The key "KeyWriter".
    static const BulletinKey& getStaticKey();

    /// Writes the key's number in this stream, in hexadecimal.
    static void write(Writer& writer, const BulletinKey& key);

private:
    unsigned getNumber(unsigned key);

    // Keys that were made one after the other, as those of a model mostly were, are all at one distance from the next.
    unsigned m_first = 0;
    unsigned m_step = 1;
    unsigned m_inTurn = 0; ///< how many came so; they need no memory

    std::unique_ptr<NumberTable> m_others; ///< all from the first that does not
};

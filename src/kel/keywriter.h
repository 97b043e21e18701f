// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/bulletin.h>
#include <kel/kelapi.h>

#include <memory>

class Writer;
template <class Key>
class NumberTable;

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
    std::unique_ptr<NumberTable<unsigned>> m_numbers;
};

// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/bulletin.h>
#include <kel/kelapi.h>

#include <memory>
#include <vector>

class NumberTable;
class Reader;

/// Gives every anonymous key of one stream a fresh key number of this run.
///
/// It comes into being on the reader's board with the first anonymous key and dies with the reader.
class KEL_API KeyReader : public Bulletin
{
public:
    KeyReader();
    ~KeyReader() override;
    KeyReader(const KeyReader&) = delete;
    KeyReader& operator=(const KeyReader&) = delete;

    /// The key "KeyReader".
    static const BulletinKey& getStaticKey();

    /// Reads a key's number in this stream and returns its key number in this run: a fresh one where the stream's
    /// number is met for the first time. The extraction is not checked; a failure leaves the stream failed.
    static unsigned read(Reader& reader);

private:
    unsigned getKeyNumber(unsigned streamNumber);

    std::unique_ptr<NumberTable> m_met;
    std::vector<unsigned> m_keyNumbers; // in the order in which they were met
};

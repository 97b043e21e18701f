// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/bulletin.h>
#include <kel/kelapi.h>

#include <unordered_map>
#include <vector>

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
    unsigned getOutOfTurn(unsigned streamNumber);

    std::vector<unsigned> m_keyNumbers;                 // by number in the stream, as long as they come in turn
    std::unordered_map<unsigned, unsigned> m_outOfTurn; // all from the first that does not
};

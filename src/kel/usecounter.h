// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/kelapi.h>

class Reader;
class Writer;

/// Counts the uses of something.
class KEL_API UseCounter
{
public:
    UseCounter() = default;
    UseCounter(const UseCounter&) = default;
    UseCounter& operator=(const UseCounter&) = default;
    virtual ~UseCounter();

    /// @return whether this is the first use.
    bool incrementUse() { return m_count++ == 0; }
    /// @return whether this was the last use. A count of 0 is not checked: it wraps to the largest number.
    bool decrementUse() { return --m_count == 0; }
    unsigned getCount() const { return m_count; }

    /// Writes the count.
    void write(Writer& writer) const;
    /// Reads the count.
    void read(Reader& reader);

private:
    unsigned m_count = 0;
};

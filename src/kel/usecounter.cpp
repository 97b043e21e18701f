// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/usecounter.h>

#include <kel/reader.h>
#include <kel/writer.h>

UseCounter::~UseCounter() = default;

void UseCounter::write(Writer& writer) const
{
    writer.write(m_count);
}

void UseCounter::read(Reader& reader)
{
    reader.read(m_count);
}

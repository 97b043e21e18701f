// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/nativereader.h>

#include <kel/reader.h>

void NativeReader::operator()(Reader& reader, Bulletin*& slot) const
{
    reader.read(slot);
}

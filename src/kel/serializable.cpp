// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/serializable.h>

#include <kel/zassert.h>

Serializable::~Serializable() = default;

bool Serializable::isWritable()
{
    return true;
}

SerializableCreator* Serializable::getCreator()
{
    ZAssert::throwProblem("false", __FILE__, __LINE__);
}

void Serializable::write(Writer& /*writer*/) {}

void Serializable::read(Reader& /*reader*/) {}

bool Serializable::fixup(Reader& /*reader*/)
{
    return true;
}

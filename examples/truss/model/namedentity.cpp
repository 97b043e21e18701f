// SPDX-License-Identifier: MIT
// truss: model
#include "truss/model/namedentity.h"

#include <kel/problem.h>
#include <kel/reader.h>
#include <kel/translator.h>
#include <kel/writer.h>

#include <algorithm>

namespace truss
{
namespace
{
bool isControl(wxUniChar character)
{
    return character.GetValue() < 0x20 || (character.GetValue() >= 0x7f && character.GetValue() < 0xa0);
}
} // namespace

void NamedEntity::checkName(const Ztring& name)
{
    if (name.empty())
        Problem::throwProblem(Translator::tr("A name is empty or not UTF-8"));
    if (std::any_of(name.wx().begin(), name.wx().end(), isControl))
        Problem::throwProblem(Translator::tr("A name holds a control character"));
}

void NamedEntity::writeFields(Writer& writer)
{
    writer.write(m_name);
}

void NamedEntity::readFields(Reader& reader)
{
    reader.read(m_name);
    checkName(m_name);
}
} // namespace truss

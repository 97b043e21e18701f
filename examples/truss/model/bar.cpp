// SPDX-License-Identifier: MIT
// truss: model
#include "truss/model/bar.h"

#include "truss/model/creator.h"
#include "truss/model/node.h"
#include "truss/text/text.h"

#include <kel/problem.h>
#include <kel/reader.h>
#include <kel/translator.h>
#include <kel/writer.h>

#include <cmath>

namespace truss
{
namespace
{
Creator<Bar> s_creator("truss::Bar");

[[noreturn]] void throwAbout(const Ztring& name, const Ztring& message)
{
    Problem::throwProblem(fill(message, name));
}

bool isPositive(double value)
{
    return value > 0 && std::isfinite(value);
}
} // namespace

Bar::Bar(const Ztring& name, Node& from, Node& to, const Section& section)
    : NamedEntity(name),
      m_from(from),
      m_to(to),
      m_section(section)
{
}

void Bar::checkLength(const Ztring& name, const Vector& from, const Vector& to)
{
    const double length = distance(from, to);
    if (length == 0)
        throwAbout(name, Translator::tr("Bar '%1' has zero length"));
    if (!std::isfinite(length))
        throwAbout(name, Translator::tr("The length of bar '%1' is not finite"));
}

void Bar::checkSection(const Ztring& name, const Section& section)
{
    if (!isPositive(section.area))
        throwAbout(name, Translator::tr("The area of bar '%1' is not positive"));
    if (!isPositive(section.modulus))
        throwAbout(name, Translator::tr("The modulus of bar '%1' is not positive"));
    if (section.density != 0 && !isPositive(section.density))
        throwAbout(name, Translator::tr("The density of bar '%1' is negative"));
}

Ztring Bar::getTitle() const
{
    return fill(Translator::tr("bar '%1'"), getName());
}

bool Bar::dependsOn(const Node& node) const
{
    return getFrom() == &node || getTo() == &node;
}

SerializableCreator* Bar::getCreator()
{
    return &s_creator;
}

void Bar::writeFields(Writer& writer)
{
    NamedEntity::writeFields(writer);
    m_from.write(writer);
    m_to.write(writer);
    writer.write(m_section.area).write(m_section.modulus).write(m_section.density);
}

void Bar::readFields(Reader& reader)
{
    NamedEntity::readFields(reader);
    m_from.read(reader);
    m_to.read(reader);
    reader.read(m_section.area).read(m_section.modulus).read(m_section.density);
    checkSection(getName(), m_section);
}

bool Bar::fixup(Reader& reader)
{
    m_from.fix(reader);
    m_to.fix(reader);
    checkLength(getName(), getFrom()->getPosition(), getTo()->getPosition());
    return true;
}
} // namespace truss

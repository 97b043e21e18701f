// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/problem.h>

Problem::Problem(const Ztring& message) : std::runtime_error(message.str()), m_annotation(message) {}

Problem::~Problem() = default;

const Ztring& Problem::getAnnotation() const
{
    return m_annotation;
}

const Ztring& Problem::getDetails() const
{
    return m_details;
}

bool Problem::hasDetails() const
{
    return !m_details.empty();
}

void Problem::annotate(const Ztring& context)
{
    Ztring details = m_details;
    if (!details.empty())
        details += "\n";
    details += m_annotation;
    Ztring annotation = context;
    // All or nothing: only the copies above can fail.
    m_annotation.swap(annotation);
    m_details.swap(details);
}

bool Problem::truncateAfter(const Ztring& marker)
{
    return m_annotation.truncateAfter(marker);
}

Ztring Problem::getMessage() const
{
    Ztring message = m_annotation;
    if (hasDetails())
        message.append("\n").append(m_details);
    return message;
}

void Problem::throwProblem(const Ztring& message)
{
    throw Problem(message);
}

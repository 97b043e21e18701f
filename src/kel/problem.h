// SPDX-License-Identifier: MIT
// libkel: Foundations
#pragma once

#include <kel/kelapi.h>
#include <kel/ztring.h>

#include <stdexcept>

/// The exception type of the library: a translated message to which callers add context on the way up.
///
///     try
///     {
///         readShapes();
///     }
///     catch (Problem& problem)
///     {
///         problem.annotate(Translator::tr("Failed to read the shapes"));
///         throw;
///     }
///
/// Users are shown getMessage(). what() keeps the message that the problem was raised with, in the locale's encoding.
class KEL_API Problem : public std::runtime_error
{
public:
    explicit Problem(const Ztring& message);
    Problem(const Problem& other) = default;
    Problem& operator=(const Problem& other) = default;
    ~Problem() override;

    /// The newest message.
    const Ztring& getAnnotation() const;
    /// The older messages, one per line: the one the problem was raised with, then contexts as they were added.
    const Ztring& getDetails() const;
    bool hasDetails() const;

    /// Puts the context on top and the message that was there at the end of the details. An empty first message
    /// leaves no line.
    void annotate(const Ztring& context);

    /// Ztring::truncateAfter on the newest message.
    bool truncateAfter(const Ztring& marker);

    /// The newest message and, on the lines below it, the details.
    Ztring getMessage() const;

    /// Throws a Problem with the message, which the caller has translated and filled.
    [[noreturn]] static void throwProblem(const Ztring& message);

private:
    Ztring m_annotation;
    Ztring m_details;
};

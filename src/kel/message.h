// SPDX-License-Identifier: MIT
// libkel: Application services
#pragma once

#include <kel/kelapi.h>

/// The kinds of message that reach the log.
class KEL_API Message
{
public:
    Message() = delete;

    enum Type
    {
        Info = 0,    ///< plain information: usage text, a notice of interruption, diagnostics
        Warning = 1, ///< something was ignored, such as an unknown option
        Error = 2    ///< an operation failed
    };
};

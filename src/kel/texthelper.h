// SPDX-License-Identifier: MIT
// libkel: Foundations
#pragma once

#include <kel/kelapi.h>
#include <kel/ztring.h>

#include <string>

/// Stateless operations on byte strings, and a few on texts.
class KEL_API TextHelper
{
public:
    TextHelper() = delete;

    /// Deletes every occurrence of the byte.
    static void remove(char c, std::string& text);

    /// The plain text of a short menu label such as "&Open...": every "&" and every "." goes.
    static std::string makeText(const std::string& label);

    /// The text, cut to 17 bytes and "..." if it is longer than 20 bytes.
    static std::string trimText(const std::string& text);

    /// The name of the file without directory and extension; the translated "untitled" for an empty path.
    static void getShortFileName(const Ztring& path, Ztring& name);

    /// The text without spaces, tabs, line feeds and carriage returns at its ends.
    static std::string trimWhitespace(const std::string& text);

    /// Replaces every occurrence of the target, scanning once from left to right; what is inserted is not searched.
    /// The target must not be empty, which is not checked. Returns `text`.
    static std::string& replaceAll(const std::string& target, const std::string& value, std::string& text);

    /// Replaces the first occurrence of the target, if any. Returns `text`.
    static std::string& replace(const std::string& target, const std::string& value, std::string& text);

    /// Appends a moment, in seconds since 1970-01-01 UTC, as UTC in the format of strftime. Nothing is appended for a
    /// negative time, nor when the result has more than 254 bytes. Not for several threads: it uses std::gmtime.
    /// @throws Problem the assertion "valid(utcTime)" when the time has no calendar date
    static void appendTimeDate(std::string& out, long time, const char* format);

    /// Appends the current time in the same way.
    static void appendTimeDateNow(std::string& out, const char* format);

    /// Byte by byte with the case mapping of the C locale that is set. Both return `text`.
    static std::string& toLowerCase(std::string& text);
    static std::string& toUpperCase(std::string& text);

    /// Whether the needle, which the caller gives in lower case, occurs in the lower-cased text.
    static bool findLowerCase(const std::string& needle, const std::string& text);

    /// `quote`, `text`, `quote`.
    static Ztring addQuotes(const Ztring& text, const Ztring& quote);
};

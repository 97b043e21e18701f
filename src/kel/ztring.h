// SPDX-License-Identifier: MIT
// libkel: Foundations
#pragma once

#include <kel/array.h>
#include <kel/kelapi.h>

#include <wx/string.h>

#include <iosfwd>
#include <locale>
#include <sstream>
#include <string>
#include <utility>

/// The one text type: a value of wide characters, with numbered placeholders and conversions from and to bytes.
///
///     Ztring message = Translator::tr("Failed to copy '%1' to '%2'");
///     message.argReplace(from);
///     message.argReplace(to);
///
/// Lengths and positions count characters (code points). "Locale" is the multibyte encoding of the current C locale
/// (LC_CTYPE); a whole text that an encoding cannot express becomes the empty text, never a failure. Construction by
/// moving copies. Not for use by two threads at once, not even through const operations: the replacing ones write
/// through them.
class KEL_API Ztring
{
public:
    /// (target, value) pairs of bytes in the locale's encoding.
    using Replacements = Array<std::pair<std::string, std::string>>;

    /// What a function returns by reference when it has no text to give.
    static const Ztring emptyZtring;

    Ztring();
    /// Decodes bytes in the locale's encoding; a null pointer is the empty text.
    Ztring(const char* bytes);
    /// Decodes exactly `bytes.size()` bytes in the locale's encoding, embedded NULs included.
    Ztring(const std::string& bytes);
    Ztring(const wxString& text);
    /// The copy starts with the placeholder "%1" again, so a message is filled in the variable that holds it.
    Ztring(const Ztring& other);
    /// Starts with the placeholder "%1" again, even on assignment to itself.
    Ztring& operator=(const Ztring& other);
    /// Leaves the other one with some text.
    Ztring& operator=(Ztring&& other) noexcept;
    ~Ztring();
    /// Exchanges two texts and the state of their placeholders; never fails.
    void swap(Ztring& other) noexcept;

    /// Comparisons are by code point: case counts, the locale does not.
    bool operator==(const Ztring& other) const;
    bool operator!=(const Ztring& other) const;
    bool operator<(const Ztring& other) const;

    unsigned int length() const;
    unsigned int size() const;
    bool empty() const;
    void clear();

    Ztring& append(const Ztring& text);
    Ztring& operator+=(const Ztring& text);
    /// A single byte, here and below: one with the high bit set is decoded by itself in the locale's encoding, and is
    /// "?" where it is no character.
    Ztring& operator+=(char c);
    /// Inserts `count` copies before the position.
    /// @throws std::out_of_range "basic_string::insert" when the position is greater than the length
    void insert(unsigned int pos, unsigned int count, char c);
    /// Deletes every occurrence of the character.
    void remove(char c);

    /// Turns a short menu label such as "&Open..." into plain text: every "&" and every "." goes, not only those of
    /// a trailing ellipsis.
    void makeText();
    /// Cuts a text of 21 characters or more to 17 and "...".
    void trimText();
    /// Drops what follows the first occurrence of the marker; false, and no change, where there is none.
    bool truncateAfter(const Ztring& marker);
    void toLowerCase();

    /// Whether the text occurs anywhere; the empty text always does.
    bool has(const Ztring& text) const;

    /// Fills the next placeholder ("%1" at the first call, then "%2", ...): its first occurrence is replaced with the
    /// value. The call counts also when the placeholder is missing. Placeholders are matched as text, so "%1" is found
    /// in "%10" too, and one inside an inserted value is found by the later call for it.
    void argReplace(const Ztring& value) const;
    /// Replaces all occurrences of the target, scanning once from left to right; an empty target occurs nowhere.
    void targetReplace(const Ztring& target, const Ztring& value) const;
    /// The same with a value formatted as append() does.
    template <typename T>
    const Ztring& replace(const Ztring& target, const T& value) const;
    /// Replaces all occurrences of each target, pair after pair: a later pair sees what an earlier one inserted.
    const Ztring& replaceAllIn(const Replacements& pairs) const;

    /// Appends the value to `out` as a std::ostringstream of the classic locale prints it by default: plain decimal
    /// integers, six significant digits, pointers in hexadecimal. Texts are bytes in the locale's encoding. What the
    /// output of the value throws passes, and a value that makes the stream bad fails with std::ios_base::failure;
    /// `out` is as it was then.
    template <typename T>
    static void append(const T& value, Ztring& out);

    /// The whole text, embedded NULs included. Surrogates are encoded like characters, here and in fromUtf8().
    std::string toUtf8() const;
    /// Replaces the text by what the bytes up to the first NUL mean; invalid UTF-8 is the empty text.
    void fromUtf8(const std::string& bytes);
    /// One byte per character: "_" for everything outside ASCII.
    std::string ascii() const;
    /// Replaces the text with one character per byte, the byte being its code point.
    void fromAscii(const std::string& bytes);
    /// The whole text in the locale's encoding, embedded NULs included.
    std::string str() const;
    operator std::string() const;
    std::wstring wStdStr() const;
    /// The text as a single-quoted script literal in UTF-8, "\" and "'" escaped with a backslash.
    std::string asStringScript() const;
    /// The wide text itself, valid as long as this object.
    const wxString& wx() const;

    /// Throws a Problem without a message, for an operation that has none of its own.
    [[noreturn]] static void throwProblem();

private:
    wxString* m_text;
    mutable unsigned int m_nextArg = 1;
};

/// Writes the text in the locale's encoding.
KEL_API std::ostream& operator<<(std::ostream& out, const Ztring& text);

template <typename T>
const Ztring& Ztring::replace(const Ztring& target, const T& value) const
{
    Ztring text;
    append(value, text);
    targetReplace(target, text);
    return *this;
}

template <typename T>
void Ztring::append(const T& value, Ztring& out)
{
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream.exceptions(std::ios_base::badbit); // a stream would keep it to itself that memory has run out
    stream << value;
    out.append(Ztring(stream.str()));
}

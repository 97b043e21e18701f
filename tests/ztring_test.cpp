// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/ztring.h>

#include "support/problem.h"
#include "support/scopedlocale.h"
#include "support/temporarydirectory.h"

#include <gtest/gtest.h>
#include <wx/debug.h>

#include <clocale>
#include <cstdlib>
#include <limits>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

namespace
{
const std::string s_eAcute = "\xC3\xA9";

Ztring fromWide(const std::wstring& text)
{
    return Ztring(wxString(text));
}

Ztring fromBytes(const std::string& utf8)
{
    Ztring text;
    text.fromUtf8(utf8);
    return text;
}

template <typename T>
Ztring format(const T& value)
{
    Ztring text;
    Ztring::append(value, text);
    return text;
}

Ztring trimmed(Ztring text)
{
    text.trimText();
    return text;
}

Ztring madeText(Ztring text)
{
    text.makeText();
    return text;
}

/// Groups digits and has a decimal comma, as no number in a text of the library has.
class Grouping : public std::numpunct<char>
{
    char do_thousands_sep() const override { return '.'; }
    char do_decimal_point() const override { return ','; }
    std::string do_grouping() const override { return "\3"; }
};

/// Makes a locale the global one of the C++ library for a scope.
class GlobalLocale
{
public:
    explicit GlobalLocale(const std::locale& locale) : m_before(std::locale::global(locale)) {}
    GlobalLocale(const GlobalLocale&) = delete;
    GlobalLocale& operator=(const GlobalLocale&) = delete;
    ~GlobalLocale() { std::locale::global(m_before); }

private:
    std::locale m_before;
};

/// Counts the complaints of the toolkit about errors in the program, in place of printing them.
class ToolkitComplaints
{
public:
    ToolkitComplaints() : m_before(wxSetAssertHandler(count)) { s_count = 0; }
    ToolkitComplaints(const ToolkitComplaints&) = delete;
    ToolkitComplaints& operator=(const ToolkitComplaints&) = delete;
    ~ToolkitComplaints() { wxSetAssertHandler(m_before); }

    static inline int s_count = 0;

private:
    static void count(const wxString&, int, const wxString&, const wxString&, const wxString&) { ++s_count; }

    wxAssertHandler_t m_before;
};

/// The cases in an encoding that knows all characters, and what must hold in one that knows ASCII only.
class ZtringInUtf8 : public testing::Test
{
    ScopedLocale m_locale{"C.utf8"};
};

class ZtringInAscii : public testing::Test
{
    ScopedLocale m_locale{"C"};
};
} // namespace

TEST(Ztring, StartsEmpty)
{
    const Ztring text;
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(text.length(), 0u);
    EXPECT_EQ(text, Ztring::emptyZtring);
    EXPECT_EQ(text, "");
}

TEST(Ztring, IsMadeFromTextsOfAllKinds)
{
    const Ztring fromLiteral = "abc";
    const Ztring fromString = std::string("abc");
    const Ztring fromWx = wxString("abc");
    EXPECT_EQ(fromLiteral, fromString);
    EXPECT_EQ(fromLiteral, fromWx);
    EXPECT_EQ(fromLiteral.wx(), wxString("abc"));
}

TEST(Ztring, ANullPointerIsTheEmptyText)
{
    const char* const none = nullptr;
    EXPECT_TRUE(Ztring(none).empty());
}

TEST(Ztring, AStringIsTakenWholeAndALiteralUpToItsNul)
{
    const std::string bytes("a\0b\0", 4);
    EXPECT_EQ(Ztring(bytes), fromWide(std::wstring(L"a\0b\0", 4)));
    EXPECT_EQ(Ztring(bytes.c_str()), "a");
}

TEST(Ztring, SwappingExchangesTheTextsAndWhereTheirPlaceholdersStand)
{
    Ztring filled = "%1 %2";
    filled.argReplace("a");
    Ztring fresh = "%1 %2 %3";
    filled.swap(fresh);
    fresh.argReplace("b");
    filled.argReplace("c");
    EXPECT_EQ(fresh, "a b");
    EXPECT_EQ(filled, "c %2 %3");
}

TEST(Ztring, CopiesShareNothing)
{
    const Ztring text = "abc";
    Ztring copy(text);
    Ztring assigned;
    assigned = text;
    EXPECT_NE(&copy.wx(), &text.wx());
    EXPECT_NE(&assigned.wx(), &text.wx());
    copy += "d";
    assigned += "e";
    EXPECT_EQ(text, "abc");
    EXPECT_EQ(copy, "abcd");
    EXPECT_EQ(assigned, "abce");
}

TEST(Ztring, AMovedFromTextIsAText)
{
    Ztring text = "abc";
    const Ztring moved(std::move(text)); // NOLINT(performance-move-const-arg)
    EXPECT_EQ(moved, "abc");
    text = "d"; // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
    EXPECT_EQ(text, "d");
}

TEST(Ztring, AssignmentToItselfKeepsTheTextAndStartsThePlaceholdersAgain)
{
    Ztring text = "%1 %2";
    text.argReplace("a");
    const Ztring& same = text;
    text = same;
    EXPECT_EQ(text, "a %2");
    text.argReplace("b");
    EXPECT_EQ(text, "a %2");
}

TEST(Ztring, EqualityComparesLengthAndText)
{
    EXPECT_TRUE(Ztring("ab") == Ztring("ab"));
    EXPECT_FALSE(Ztring("ab") == Ztring("abc"));
    EXPECT_FALSE(Ztring("ab") == Ztring("aB"));
    EXPECT_TRUE(Ztring("ab") != Ztring("abc"));
    EXPECT_TRUE(Ztring("ab") != Ztring("ac"));
    EXPECT_FALSE(Ztring("ab") != Ztring("ab"));
}

TEST(Ztring, ComparesWithLiteralsStringsAndWideTextsOnEitherSide)
{
    const Ztring text = "abc";
    EXPECT_TRUE(text == "abc");
    EXPECT_TRUE("abc" == text);
    EXPECT_TRUE(text == std::string("abc"));
    EXPECT_TRUE(std::string("abc") == text);
    EXPECT_TRUE(text == wxString("abc"));
    EXPECT_TRUE(wxString("abc") == text);
    EXPECT_TRUE(text != "abd");
    EXPECT_TRUE("abd" != text);
    EXPECT_TRUE(text < "abd");
}

TEST(Ztring, OrderIsByCodePoint)
{
    EXPECT_TRUE(Ztring("ab") < Ztring("abc"));
    EXPECT_TRUE(Ztring("B") < Ztring("a"));
    EXPECT_FALSE(Ztring("abc") < Ztring("ab"));
    EXPECT_FALSE(Ztring("ab") < Ztring("ab"));
    EXPECT_TRUE(Ztring("z") < fromWide(L"\u00E9"));
}

TEST(Ztring, LengthCountsCharacters)
{
    const Ztring text = fromWide(L"a\u00E9\U0001F600");
    EXPECT_EQ(text.length(), 3u);
    EXPECT_EQ(text.size(), 3u);
    EXPECT_FALSE(text.empty());
}

TEST(Ztring, ClearErasesTheTextAndKeepsThePlaceholderNumber)
{
    Ztring text = "%1";
    text.argReplace("a");
    text.clear();
    EXPECT_TRUE(text.empty());
    text += "%1 %2";
    text.argReplace("b");
    EXPECT_EQ(text, "%1 b");
}

TEST(Ztring, AppendsTexts)
{
    Ztring text = "a";
    EXPECT_EQ(&text.append("b"), &text);
    EXPECT_EQ(&(text += "c"), &text);
    text += std::string("d");
    text += text;
    EXPECT_EQ(text, "abcdabcd");
}

TEST(Ztring, AppendsAByteAsItsCharacter)
{
    Ztring text;
    (text += 'a') += '\x7F';
    text += '\0';
    EXPECT_EQ(text, fromWide(std::wstring(L"a\x7F\0", 3)));
}

TEST(Ztring, InsertsCopiesBeforeThePosition)
{
    Ztring text = "ab";
    text.insert(1, 3, 'x');
    EXPECT_EQ(text, "axxxb");
    text.insert(0, 1, 'y');
    text.insert(6, 1, 'z');
    text.insert(2, 0, 'q');
    EXPECT_EQ(text, "yaxxxbz");
}

TEST(Ztring, InsertBeyondTheEndThrows)
{
    Ztring text = "ab";
    try
    {
        text.insert(3, 1, 'x');
        ADD_FAILURE();
    }
    catch (const std::out_of_range& error)
    {
        EXPECT_STREQ(error.what(), "basic_string::insert");
    }
    EXPECT_EQ(text, "ab");
}

TEST(Ztring, RemoveDeletesEveryOccurrence)
{
    Ztring text = "xxaxx";
    text.remove('x');
    EXPECT_EQ(text, "a");
    text.remove('b');
    EXPECT_EQ(text, "a");
}

TEST(Ztring, MakeTextDropsAmpersandsAndFullStops)
{
    EXPECT_EQ(madeText("&Save As..."), "Save As");
    EXPECT_EQ(madeText("Version 1.2"), "Version 12");
    EXPECT_EQ(madeText(""), "");
}

TEST(Ztring, TrimTextCutsFromTwentyOneCharactersOn)
{
    EXPECT_EQ(trimmed("12345678901234567890"), "12345678901234567890");
    EXPECT_EQ(trimmed("123456789012345678901"), "12345678901234567...");
    EXPECT_EQ(trimmed(std::string(500, 'x')), std::string(17, 'x') + "...");
    EXPECT_EQ(trimmed(""), "");
}

TEST(Ztring, TrimTextCountsCharacters)
{
    const Ztring text = fromWide(std::wstring(20, L'\u00E9'));
    EXPECT_EQ(trimmed(text), text);
}

TEST(Ztring, TruncateAfterKeepsTheTextUpToTheFirstMarker)
{
    Ztring text = "a\nb\nc";
    EXPECT_TRUE(text.truncateAfter("\n"));
    EXPECT_EQ(text, "a\n");
    EXPECT_TRUE(text.truncateAfter("\n"));
    EXPECT_EQ(text, "a\n");
}

TEST(Ztring, TruncateAfterAnAbsentMarkerChangesNothing)
{
    Ztring text = "abc";
    EXPECT_FALSE(text.truncateAfter("\n"));
    EXPECT_EQ(text, "abc");
}

TEST(Ztring, TruncateAfterTheTextItselfOrTheEmptyMarker)
{
    Ztring text = "abc";
    EXPECT_TRUE(text.truncateAfter(text));
    EXPECT_EQ(text, "abc");
    EXPECT_TRUE(text.truncateAfter(""));
    EXPECT_EQ(text, "");
}

TEST_F(ZtringInUtf8, ToLowerCaseMapsEveryLetter)
{
    Ztring text = fromWide(L"AbC \u00C9");
    text.toLowerCase();
    EXPECT_EQ(text, fromWide(L"abc \u00E9"));
}

TEST(Ztring, HasFindsATextAnywhere)
{
    const Ztring text = "abc";
    EXPECT_TRUE(text.has("bc"));
    EXPECT_TRUE(text.has(text));
    EXPECT_FALSE(text.has("cb"));
    EXPECT_TRUE(text.has(""));
    EXPECT_TRUE(Ztring().has(""));
}

TEST(ZtringPlaceholders, AreFilledByNumber)
{
    const Ztring text = "Line: %3 File: %2";
    text.argReplace("a");
    text.argReplace("b");
    text.argReplace("c");
    EXPECT_EQ(text, "Line: c File: b");
}

TEST(ZtringPlaceholders, OnlyTheFirstOccurrenceIsFilled)
{
    const Ztring text = "%1 of %1";
    text.argReplace("x");
    EXPECT_EQ(text, "x of %1");
    text.argReplace("y");
    EXPECT_EQ(text, "x of %1");
}

TEST(ZtringPlaceholders, ACallForAMissingPlaceholderCounts)
{
    const Ztring text = "Value %2";
    text.argReplace("a");
    text.argReplace("b");
    text.argReplace("c");
    EXPECT_EQ(text, "Value b");
}

TEST(ZtringPlaceholders, ACopyStartsAgain)
{
    const Ztring text = "%1 %2 %3";
    text.argReplace("a");
    text.argReplace("b");
    const Ztring copy(text); // NOLINT(performance-unnecessary-copy-initialization)
    copy.argReplace("c");
    EXPECT_EQ(copy, "a b %3");
    text.argReplace("c");
    EXPECT_EQ(text, "a b c");

    Ztring assigned = "%1 %2";
    assigned.argReplace("a");
    assigned = "%1";
    assigned.argReplace("b");
    EXPECT_EQ(assigned, "b");
}

TEST(ZtringPlaceholders, OtherChangesKeepTheNumber)
{
    Ztring text = "%1";
    text.argReplace("a");
    text.append(" %1");
    text += " %2";
    text.targetReplace("a", "b");
    text.fromUtf8("%1 %2");
    text.argReplace("c");
    EXPECT_EQ(text, "%1 c");
}

TEST(ZtringPlaceholders, AreMatchedAsText)
{
    const Ztring text = "%10";
    text.argReplace("a");
    EXPECT_EQ(text, "a0");
}

TEST(ZtringPlaceholders, ReachTheTenth)
{
    const Ztring text = "x";
    for (int i = 1; i < 10; ++i)
        text.argReplace("");
    text.targetReplace("x", "%10");
    text.argReplace("j");
    EXPECT_EQ(text, "j");
}

TEST(ZtringPlaceholders, AnInsertedValueIsScannedByLaterCallsOnly)
{
    const Ztring text = "%1 %2";
    text.argReplace("%1%2");
    EXPECT_EQ(text, "%1%2 %2");
    text.argReplace("b");
    EXPECT_EQ(text, "%1b %2");
}

TEST(ZtringPlaceholders, CanBeFilledWithTheTemplateItself)
{
    const Ztring text = "<%1>";
    text.argReplace(text);
    EXPECT_EQ(text, "<<%1>>");
}

TEST(ZtringReplacement, TargetReplaceReplacesAllOccurrences)
{
    const Ztring text = "banana";
    text.targetReplace("a", "aa");
    EXPECT_EQ(text, "baanaanaa");
    text.targetReplace("aa", "");
    EXPECT_EQ(text, "bnn");
    text.targetReplace("x", "y");
    EXPECT_EQ(text, "bnn");
}

TEST(ZtringReplacement, ScansOnceFromTheLeft)
{
    const Ztring text = "aaaa";
    text.targetReplace("aaa", "b");
    EXPECT_EQ(text, "ba");
}

TEST(ZtringReplacement, AnEmptyTargetOccursNowhere)
{
    const ToolkitComplaints complaints;
    const Ztring text = "ab";
    text.targetReplace("", "x");
    EXPECT_EQ(text, "ab");
    EXPECT_EQ(complaints.s_count, 0);
}

TEST(ZtringReplacement, TargetAndValueCanBeTheTextItself)
{
    const Ztring text = "ab";
    text.targetReplace(text, "cd");
    EXPECT_EQ(text, "cd");
    text.targetReplace("d", text);
    EXPECT_EQ(text, "ccd");
    text.targetReplace(text, text);
    EXPECT_EQ(text, "ccd");
}

TEST(ZtringReplacement, ReplaceFormatsTheValue)
{
    const Ztring text = "n of n";
    EXPECT_EQ(&text.replace("n", 12u), &text);
    EXPECT_EQ(text, "12 of 12");
    text.replace("12", 0.5).replace("of", "and").replace(" ", std::string("_"));
    EXPECT_EQ(text, "0.5_and_0.5");
}

TEST(ZtringReplacement, PairsAreReplacedOneAfterAnother)
{
    Ztring::Replacements pairs;
    pairs.push_back({"a", "b"});
    pairs.push_back({"b", "c"});
    pairs.push_back({"", "x"});
    const Ztring text = "a b";
    EXPECT_EQ(&text.replaceAllIn(pairs), &text);
    EXPECT_EQ(text, "c c");
}

TEST_F(ZtringInUtf8, PairsAreInTheEncodingOfTheLocale)
{
    Ztring::Replacements pairs;
    pairs.push_back({"e", s_eAcute});
    const Ztring text = "e";
    EXPECT_EQ(text.replaceAllIn(pairs), fromWide(L"\u00E9"));
}

TEST(ZtringFormatting, IntegersArePlainDecimal)
{
    EXPECT_EQ(format(0u), "0");
    EXPECT_EQ(format(1234567u), "1234567");
    EXPECT_EQ(format(-1234567L), "-1234567");
    EXPECT_EQ(format(std::numeric_limits<long>::min()), "-9223372036854775808");
}

TEST(ZtringFormatting, FloatingPointNumbersHaveSixDigits)
{
    EXPECT_EQ(format(0.1f), "0.1");
    EXPECT_EQ(format(0.1), "0.1");
    EXPECT_EQ(format(1e6), "1e+06");
    EXPECT_EQ(format(1234567.0), "1.23457e+06");
    EXPECT_EQ(format(-2.5), "-2.5");
}

TEST(ZtringFormatting, TextsAreCopied)
{
    EXPECT_EQ(format<const char*>("a b"), "a b");
    EXPECT_EQ(format(std::string("a b")), "a b");
    EXPECT_EQ(format("ab"), "ab");
    EXPECT_EQ(format(Ztring("ab")), "ab");
}

TEST(ZtringFormatting, PointersAreHexadecimal)
{
    void* const pointer = reinterpret_cast<void*>(0x1a2b); // NOLINT(performance-no-int-to-ptr)
    EXPECT_EQ(format(pointer), "0x1a2b");
}

TEST(ZtringFormatting, AppendsToWhatIsThere)
{
    Ztring text = "n = ";
    Ztring::append(3u, text);
    EXPECT_EQ(text, "n = 3");
}

TEST(ZtringFormatting, DoesNotFollowTheGlobalLocale)
{
    const GlobalLocale global(std::locale(std::locale::classic(), new Grouping));
    EXPECT_EQ(format(1234567u), "1234567");
    EXPECT_EQ(format(0.5), "0.5");
}

TEST_F(ZtringInUtf8, TextsAreFormattedInTheEncodingOfTheLocale)
{
    EXPECT_EQ(format(s_eAcute), fromWide(L"\u00E9"));
}

TEST(ZtringUtf8, EncodesEveryCharacter)
{
    EXPECT_EQ(fromWide(L"\u00E9").toUtf8(), s_eAcute);
    EXPECT_EQ(fromWide(L"a\u20AC\U0001F600").toUtf8(), "a\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(Ztring().toUtf8(), "");
}

TEST(ZtringUtf8, EncodesEmbeddedNuls)
{
    EXPECT_EQ(fromWide(std::wstring(L"a\0b", 3)).toUtf8(), std::string("a\0b", 3));
    EXPECT_EQ(fromWide(std::wstring(L"a\0", 2)).toUtf8(), std::string("a\0", 2));
    EXPECT_EQ(fromWide(std::wstring(1, L'\0')).toUtf8(), std::string(1, '\0'));
    // Behind other characters the text goes through the converter.
    EXPECT_EQ(fromWide(std::wstring(L"\u00E9\0\u00E9\0\0", 5)).toUtf8(), std::string("\xC3\xA9\0\xC3\xA9\0\0", 7));
    EXPECT_EQ(fromWide(std::wstring(L"\0\u00E9", 2)).toUtf8(), std::string("\0\xC3\xA9", 3));
}

TEST(ZtringUtf8, DecodesEveryCharacter)
{
    EXPECT_EQ(fromBytes("a\xE2\x82\xAC\xF0\x9F\x98\x80"), fromWide(L"a\u20AC\U0001F600"));
    EXPECT_EQ(fromBytes("\xF4\x8F\xBF\xBF"), fromWide(L"\U0010FFFF"));
    EXPECT_EQ(fromBytes(""), "");
}

TEST(ZtringUtf8, DecodesUpToTheFirstNul)
{
    EXPECT_EQ(fromBytes(std::string("ab\0c", 4)), "ab");
    EXPECT_EQ(fromBytes(std::string("ab\0\xFF", 4)), "ab");
    EXPECT_EQ(fromBytes(std::string("\0ab", 3)), "");
}

TEST(ZtringUtf8, InvalidBytesAreTheEmptyText)
{
    const ToolkitComplaints complaints;
    for (const char* const bytes :
         {"\xFF\xFE", "abc\xFF", "\xC3", "a\xE2\x82", "\xA9", "\xC0\x80", "\xC3\x28", "\xF4\x90\x80\x80", "\xF8\x88"})
    {
        Ztring text = "before";
        text.fromUtf8(bytes);
        EXPECT_EQ(text, "") << testing::PrintToString(bytes);
    }
    EXPECT_EQ(complaints.s_count, 0);
}

TEST(ZtringUtf8, LongerFormsThanNeededAreTheEmptyText)
{
    for (const char* const bytes :
         {"a\xC0\xAF", "\xE0\x80\xAF", "\xE0\x9F\xBF", "\xF0\x80\x80\xAF", "\xF0\x80\x9F\x98", "\xF0\x8F\xBF\xBF b"})
        EXPECT_EQ(fromBytes(bytes), "") << testing::PrintToString(bytes);
}

TEST(ZtringUtf8, SurrogatesPassBothWays)
{
    const std::string bytes = "a\xED\xA0\xBD\xED\xB8\x80";
    EXPECT_EQ(fromBytes(bytes), fromWide({L'a', wchar_t(0xD83D), wchar_t(0xDE00)}));
    EXPECT_EQ(fromBytes(bytes).toUtf8(), bytes);
}

TEST(ZtringUtf8, WhatIsNoCodePointIsTheEmptyText)
{
    const ToolkitComplaints complaints;
    EXPECT_EQ(fromWide({L'a', static_cast<wchar_t>(0x110000)}).toUtf8(), "");
    EXPECT_EQ(fromWide({L'a', static_cast<wchar_t>(0x80000000)}).toUtf8(), "");
    EXPECT_EQ(complaints.s_count, 0);
}

TEST(ZtringAscii, OtherCharactersBecomeUnderscores)
{
    EXPECT_EQ(fromWide(L"caf\u00E9 \u20AC\U0001F600\x7F").ascii(), "caf_ __\x7F");
    EXPECT_EQ(fromWide({L'a', static_cast<wchar_t>(0x80000000)}).ascii(), "a_");
    EXPECT_EQ(fromWide(std::wstring(L"a\0b", 3)).ascii(), std::string("a\0b", 3));
    EXPECT_EQ(Ztring().ascii(), "");
}

TEST(ZtringAscii, EachByteIsACodePoint)
{
    Ztring text = "before";
    text.fromAscii(std::string("a\0\x80\xFF", 4));
    EXPECT_EQ(text, fromWide(std::wstring(L"a\0\u0080\u00FF", 4)));
}

TEST_F(ZtringInUtf8, BytesAreDecodedInTheEncodingOfTheLocale)
{
    EXPECT_EQ(Ztring(s_eAcute), fromWide(L"\u00E9"));
    EXPECT_EQ(Ztring(s_eAcute.c_str()), fromWide(L"\u00E9"));
}

TEST_F(ZtringInUtf8, TheTextIsEncodedInTheEncodingOfTheLocale)
{
    const Ztring text = fromWide(L"a\u00E9");
    EXPECT_EQ(text.str(), "a" + s_eAcute);
    const std::string converted = text;
    EXPECT_EQ(converted, "a" + s_eAcute);
    std::ostringstream out;
    out << text << "!";
    EXPECT_EQ(out.str(), "a" + s_eAcute + "!");
}

TEST_F(ZtringInUtf8, BytesThatAreNoTextAreTheEmptyText)
{
    const ToolkitComplaints complaints;
    EXPECT_EQ(Ztring("ab\xFF"), "");
    EXPECT_EQ(Ztring(std::string("ab\0\xC3", 4)), "");
    EXPECT_EQ(Ztring("\xF4\x90\x80\x80"), "");
    EXPECT_EQ(complaints.s_count, 0);
}

TEST_F(ZtringInUtf8, WhatIsNoCodePointIsNoBytes)
{
    EXPECT_EQ(fromWide({L'a', static_cast<wchar_t>(0x110000)}).str(), "");
    EXPECT_EQ(fromWide({L'a', static_cast<wchar_t>(0xD800)}).str(), "");
}

TEST_F(ZtringInUtf8, AHighByteAloneIsAQuestionMark)
{
    const ToolkitComplaints complaints;
    Ztring text = "a";
    text += '\xE9';
    text.insert(0, 2, '\xFF');
    EXPECT_EQ(text, "??a?");
    text.remove('\xC3');
    EXPECT_EQ(text, "a");
    EXPECT_EQ(complaints.s_count, 0);
}

TEST_F(ZtringInAscii, BytesOutsideAsciiAreTheEmptyText)
{
    const ToolkitComplaints complaints;
    EXPECT_EQ(Ztring("a" + s_eAcute), "");
    EXPECT_EQ(Ztring("abc"), fromWide(L"abc"));
    EXPECT_EQ(complaints.s_count, 0);
}

TEST_F(ZtringInAscii, ATextOutsideAsciiIsNoBytes)
{
    const ToolkitComplaints complaints;
    EXPECT_EQ(fromWide(L"a\u00E9").str(), "");
    std::ostringstream out;
    out << fromWide(L"a\u00E9");
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(complaints.s_count, 0);
}

TEST_F(ZtringInAscii, AHighByteAloneIsAQuestionMark)
{
    const ToolkitComplaints complaints;
    Ztring text;
    text += '\xE9';
    EXPECT_EQ(text, "?");
    EXPECT_EQ(complaints.s_count, 0);
}

TEST_F(ZtringInAscii, Utf8DoesNotDependOnTheLocale)
{
    EXPECT_EQ(fromBytes(s_eAcute).toUtf8(), s_eAcute);
}

TEST(Ztring, BytesKeepEmbeddedNuls)
{
    for (const char* const name : {"C", "C.utf8"})
    {
        const ScopedLocale locale(name);
        for (const std::string& bytes :
             {std::string("a\0b", 3), std::string("a\0", 2), std::string("\0", 1), std::string("\0\0a\0\0", 5)})
            EXPECT_EQ(Ztring(bytes).str(), bytes) << name;
    }
}

TEST(Ztring, BytesKeepEmbeddedNulsBesideOtherCharacters)
{
    const ScopedLocale locale("C.utf8");
    const std::string bytes("\xC3\xA9\0\xC3\xA9\0\0", 7);
    EXPECT_EQ(Ztring(bytes), fromWide(std::wstring(L"\u00E9\0\u00E9\0\0", 5)));
    EXPECT_EQ(Ztring(bytes).str(), bytes);
}

TEST(Ztring, AssignmentByMovingTakesTheTextAndStartsWithTheFirstPlaceholder)
{
    Ztring from("%1 %2");
    from.argReplace("a");
    Ztring to("old");
    to.argReplace("unused");
    to = std::move(from);
    to.argReplace("b");
    EXPECT_EQ(to, "a %2");
    Ztring& same = to;
    to = std::move(same);
    EXPECT_EQ(to, "a %2");
}

TEST(Ztring, StreamOutputFollowsTheWidthOfTheStream)
{
    std::ostringstream out;
    out.width(5);
    out << Ztring("abc");
    EXPECT_EQ(out.str(), "  abc");
}

TEST(Ztring, WideStringIsACopyOfTheText)
{
    EXPECT_EQ(fromWide(L"a\u00E9").wStdStr(), L"a\u00E9");
    EXPECT_EQ(Ztring().wStdStr(), L"");
}

TEST(Ztring, ScriptStringIsQuotedAndEscaped)
{
    EXPECT_EQ(Ztring("it's a\\b").asStringScript(), "'it\\'s a\\\\b'");
    EXPECT_EQ(Ztring("\\'").asStringScript(), "'\\\\\\''");
    EXPECT_EQ(fromWide(L"\u00E9").asStringScript(), "'" + s_eAcute + "'");
    EXPECT_EQ(Ztring().asStringScript(), "''");
}

TEST(Ztring, ThrowProblemHasNoMessage)
{
    EXPECT_PROBLEM(Ztring::throwProblem(), "");
}

TEST(Ztring, LeavesTheLocaleAlone)
{
    const ScopedLocale locale("C.utf8");
    const std::string before = std::setlocale(LC_ALL, nullptr);
    Ztring text(s_eAcute);
    text.toLowerCase();
    Ztring::append(1.5, text);
    EXPECT_EQ(text.str(), s_eAcute + "1.5");
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
}

// The locale is made for the test, since few machines have one whose bytes are single characters.
TEST(Ztring, AHighByteIsTheCharacterThatTheLocaleDecodes)
{
    const TemporaryDirectory directory;
    const std::string command = "localedef -i de_DE -f ISO-8859-1 '" + directory / "de_DE.iso88591" + "' 2>/dev/null";
    if (std::system(command.c_str()) != 0)
        GTEST_SKIP() << "localedef or its sources are missing";
    ASSERT_EQ(setenv("LOCPATH", directory.getPath().c_str(), 1), 0);
    const ScopedLocale locale("de_DE.iso88591");
    Ztring text("a");
    text += '\xE9';
    text.insert(0, 2, '\xE4');
    EXPECT_EQ(text, fromWide(L"\u00E4\u00E4a\u00E9"));
    EXPECT_EQ(text.str(), "\xE4\xE4"
                          "a\xE9");
    text.remove('\xE4');
    EXPECT_EQ(text, fromWide(L"a\u00E9"));
}

// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/translator.h>

#include "support/catalogue.h"
#include "support/scopedlocale.h"

#include <gtest/gtest.h>
#include <wx/translation.h>

namespace
{
const char* const s_openFailed = "Failed to open file: '%1'";
} // namespace

TEST(Translator, WithoutCataloguesTheTextStays)
{
    ASSERT_EQ(wxTranslations::Get(), nullptr);
    EXPECT_EQ(Translator::tr("Save"), "Save");
    EXPECT_EQ(Translator::translate("Save"), "Save");
    EXPECT_EQ(Translator::tr(""), "");
}

TEST(Translator, TranslatesByTheLoadedCatalogue)
{
    const Catalogue catalogue{{"Save", "Sichern"}};
    EXPECT_EQ(Translator::tr("Save"), "Sichern");
    EXPECT_EQ(Translator::translate("Save"), "Sichern");
}

TEST(Translator, ATextThatNoCatalogueKnowsStays)
{
    const Catalogue catalogue{{"Save", "Sichern"}};
    EXPECT_EQ(Translator::tr("Open"), "Open");
    EXPECT_EQ(Translator::tr("save"), "save");
}

TEST(Translator, AnEmptySetOfCataloguesLeavesTheText)
{
    wxTranslations::Set(new wxTranslations);
    EXPECT_EQ(Translator::tr("Save"), "Save"); // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the toolkit has it
    wxTranslations::Set(nullptr);
}

TEST(Translator, TheEmptyTextIsNotTheHeadOfTheCatalogue)
{
    const Catalogue catalogue{{"Save", "Sichern"}};
    EXPECT_EQ(Translator::tr(""), "");
}

TEST(Translator, ATemplateIsTranslatedBeforeItIsFilled)
{
    const Catalogue catalogue{{s_openFailed, "'%1' kann nicht ge\xC3\xB6"
                                             "ffnet werden"}};
    const Ztring message = Translator::tr(s_openFailed);
    message.argReplace("a.txt");
    EXPECT_EQ(message.toUtf8(), "'a.txt' kann nicht ge\xC3\xB6"
                                "ffnet werden");
}

TEST(Translator, ATranslationStartsWithTheFirstPlaceholder)
{
    const Catalogue catalogue{{"%1 and %2", "%2 und %1"}};
    const Ztring text = "%1 and %2";
    const Ztring message = Translator::tr(text);
    message.argReplace("a");
    message.argReplace("b");
    EXPECT_EQ(message, "b und a");
    EXPECT_EQ(text, "%1 and %2");
}

TEST(Translator, TrTrimTrsTakesTheMarksAway)
{
    const Catalogue catalogue{{"Open", "Auf"}, {"Save", "Sichern"}};
    EXPECT_EQ(Translator::trTrimTrs("trs(\"Open\")"), "Auf");
    EXPECT_EQ(Translator::trTrimTrs("trs(\"Save\")"), "Sichern");
    EXPECT_EQ(Translator::trTrimTrs("trs(\"Close\")"), "Close");
}

TEST(Translator, TrTrimTrsTranslatesATextWithoutMarks)
{
    const Catalogue catalogue{{"Open", "Auf"}};
    EXPECT_EQ(Translator::trTrimTrs("Open"), "Auf");
    EXPECT_EQ(Translator::trTrimTrs(""), "");
}

TEST(Translator, TrTrimTrsTakesOnlyTheFirstOfEachMark)
{
    EXPECT_EQ(Translator::trTrimTrs("trs(\"a\") trs(\"b\")"), "a trs(\"b\")");
    EXPECT_EQ(Translator::trTrimTrs("a\") trs(\"b"), "a b");
    EXPECT_EQ(Translator::trTrimTrs("trs(\"a"), "a");
    EXPECT_EQ(Translator::trTrimTrs("trs(a)"), "trs(a)");
}

TEST(Translator, TrTrimTrsDecodesTheEncodingOfTheLocale)
{
    const ScopedLocale locale("C.utf8");
    EXPECT_EQ(Translator::trTrimTrs("trs(\"\xC3\xA9\")").toUtf8(), "\xC3\xA9");
}

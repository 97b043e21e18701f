// SPDX-License-Identifier: MIT
// File names taken apart and put together again.
#include <kel/file_kel.h>
#include <kel/problem.h>
#include <kel/texthelper.h>

#include "support/fuzzing.h"

#include <clocale>
#include <cwctype>
#include <string>

namespace
{
using Fold = std::wint_t (*)(std::wint_t);

Ztring makeText(const std::string& bytes)
{
    Ztring text;
    text.fromUtf8(bytes);
    if (text.empty())
        text.fromAscii(bytes);
    return text;
}

std::wstring fold(const Ztring& text, Fold foldOne)
{
    std::wstring folded = text.wStdStr();
    for (wchar_t& c : folded)
        c = static_cast<wchar_t>(foldOne(static_cast<std::wint_t>(c)));
    return folded;
}

std::size_t findFolded(const Ztring& needle, const Ztring& path)
{
    const std::size_t found = fold(path, std::towlower).rfind(fold(needle, std::towlower));
    return found != std::wstring::npos ? found : fold(path, std::towupper).rfind(fold(needle, std::towupper));
}

void expectParts(const Kel::File& file)
{
    const std::wstring path = file.getPath().wStdStr();
    const std::wstring name = file.getFileName().wStdStr();
    const std::wstring directory = file.getDirectory().wStdStr();
    EXPECT_PROPERTY(name.find_first_of(L"/\\") == std::wstring::npos);
    if (path.find_first_of(L"/\\") == std::wstring::npos)
        EXPECT_PROPERTY(name == path && directory == path);
    else
        EXPECT_PROPERTY(directory + path[directory.size()] + name == path);

    Kel::File stem(file);
    stem.removeExtension();
    const std::wstring extension = file.getExtension().wStdStr();
    EXPECT_PROPERTY(extension.find(L'.') == std::wstring::npos);
    if (path.find(L'.') == std::wstring::npos)
        EXPECT_PROPERTY(extension.empty() && stem.getPath() == file.getPath());
    else
        EXPECT_PROPERTY(stem.getPath().wStdStr() + L'.' + extension == path);
    EXPECT_PROPERTY(file.getName() == stem.getFileName());

    EXPECT_PROPERTY(file.getQuotedFile().wStdStr() == L'"' + path + L'"');
    EXPECT_PROPERTY(file.getQuotedFile() == TextHelper::addQuotes(file.getPath(), "\""));
    Ztring shortName;
    TextHelper::getShortFileName(file.getPath(), shortName);
    EXPECT_PROPERTY(shortName == (path.empty() ? Ztring("untitled") : file.getName()));
}

void expectExtension(const Kel::File& file, const Ztring& extension)
{
    const Ztring dotted = Ztring(".").append(extension);
    const std::size_t found = findFolded(dotted, file.getPath());
    EXPECT_PROPERTY(Kel::find(dotted, file.getPath().wx()) == found);
    EXPECT_PROPERTY(file.endsIn(extension) == (found != std::wstring::npos));

    Kel::File added(file);
    added.addExtension(extension);
    EXPECT_PROPERTY(added.endsIn(extension));
    const Kel::File once(added);
    added.addExtension(extension);
    EXPECT_PROPERTY(added.getPath() == once.getPath());
    if (found == std::wstring::npos)
    {
        added.removeExtension(extension);
        EXPECT_PROPERTY(added.getPath() == file.getPath());
    }

    Kel::File removed(file);
    removed.removeExtension(extension);
    std::wstring expected = file.getPath().wStdStr();
    if (found != std::wstring::npos)
        expected.erase(found, dotted.length());
    EXPECT_PROPERTY(removed.getPath().wStdStr() == expected);
}

void expectMessages(const Kel::File& file)
{
    try
    {
        file.throwOpenFailed();
    }
    catch (Problem& problem)
    {
        const std::wstring quoted = L": '" + file.getPath().wStdStr() + L"'";
        EXPECT_PROPERTY(problem.getMessage().wStdStr() == L"Failed to open file" + quoted);
        file.annotateRead(problem);
        EXPECT_PROPERTY(problem.getAnnotation().wStdStr() == L"Failed to read file" + quoted);
        file.annotateWrite(problem);
        EXPECT_PROPERTY(problem.getAnnotation().wStdStr() == L"Failed to save file" + quoted);
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const char* const locale = std::setlocale(LC_ALL, "C.UTF-8");
    EXPECT_PROPERTY(locale);
    Input input(data, size);
    const Ztring extension = makeText(input.takePart());
    Kel::File file(makeText(input.takePart()));
    expectParts(file);
    expectExtension(file, extension);
    if (input.takeByte() == 'm')
        expectMessages(file);
    file.clear();
    EXPECT_PROPERTY(file.empty() && file.getPath().empty());
    return 0;
}

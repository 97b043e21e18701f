// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

namespace truss
{
/// The user's language.
///
/// Messages come from a catalogue, from which the library's Translator takes its texts. The languages are those of the
/// variable LANGUAGE, separated by ":", then that of the locale. Catalogues are searched for along the library's
/// ResourcePaths as <directory>/<language>/LC_MESSAGES/truss.mo; without one the program speaks English.
class Language
{
public:
    Language() = delete;

    /// Sets the locale that the environment asks for, before anything else is done. Where that knows ASCII only, texts
    /// and file names are taken for UTF-8.
    static void setLocale();

    /// Loads the catalogue, once.
    static void loadCatalogue();
};
} // namespace truss

// SPDX-License-Identifier: MIT
// truss: a modeller for pin-jointed space trusses, as a specimen of the applications that libkel is for
#include "truss/shell/application.h"
#include "truss/shell/language.h"

int main(int argc, char** argv)
{
    truss::Language::setLocale(); // the application's decision; the library never changes the locale
    return truss::Application(argc, argv).run();
}

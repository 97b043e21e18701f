// SPDX-License-Identifier: MIT
// truss: a modeller for pin-jointed space trusses, as a specimen of the applications that libkel is for
#include "truss/shell/application.h"

#include <clocale>

int main(int argc, char** argv)
{
    std::setlocale(LC_ALL, ""); // the application's decision; the library never changes the locale
    return truss::Application().run(argc, argv);
}

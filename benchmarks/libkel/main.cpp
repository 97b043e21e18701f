// SPDX-License-Identifier: MIT
// libkel: benchmarks
#include "application.h"
#include "support/benchmarks.h"

#include <clocale>

int main(int argc, char** argv)
{
    std::setlocale(LC_ALL, "C.UTF-8");
    const BenchmarkStatus status;
    return bench::run(argc, argv);
}

// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/parallel.h>

#include <kel/log_kel.h>
#include <kel/translator.h>

#include "totext_p.h"

#include <algorithm>
#include <cmath>
#include <ctime>

namespace
{
constinit bool s_isInfoActive = false;

std::uint64_t getTicks()
{
    return static_cast<std::uint64_t>(std::clock());
}

void log(const Ztring& text)
{
    Kel::Log::getSingleton()->append(text, Message::Info);
}

void logBegin(const Parallel::Info* info, const char* name)
{
    const Ztring text = Translator::tr("Thread::Info %1, Task Begin: %2");
    text.argReplace(toText(info));
    text.argReplace(toText(name));
    log(text);
}

void logThreads(const Parallel::Info* info, unsigned int threads, unsigned int taskSize)
{
    const Ztring text = Translator::tr("Thread::Info %1, Threads: %2, Task Size: %3");
    text.argReplace(toText(info));
    text.argReplace(toText(threads));
    text.argReplace(toText(taskSize));
    log(text);
}

void logEnd(const Parallel::Info* info, std::uint64_t start)
{
    const float seconds = static_cast<float>(getTicks() - start) / 1000000.0F;
    const Ztring text = Translator::tr("Thread::Info %1, Task End, Duration: %2s");
    text.argReplace(toText(info));
    text.argReplace(toText(seconds));
    log(text);
}
} // namespace

Parallel* Parallel::getSingleton()
{
    static Parallel s_parallel;
    return &s_parallel;
}

unsigned int Parallel::getMaxThreadCount() const
{
    return 1;
}

void Parallel::setThreadCount(unsigned int count)
{
    m_threadCount = count;
}

void Parallel::setChunkSize(unsigned int size)
{
    m_chunkSize = size;
}

void Parallel::setShowDiagnostics(bool show)
{
    m_showDiagnostics = show;
}

unsigned int Parallel::setThreads(unsigned int taskSize, unsigned int maxThreads) const
{
    const float quotient = static_cast<float>(taskSize) / static_cast<float>(m_chunkSize);
    // 64 bits, since the largest task sizes round up to more than 32 bits hold.
    const auto chunks = static_cast<std::uint64_t>(std::floor(static_cast<double>(quotient) + 0.5));
    const std::uint64_t wanted = std::max<std::uint64_t>(chunks, 1);
    return static_cast<unsigned int>(std::min<std::uint64_t>({m_threadCount, maxThreads, wanted}));
}

unsigned int Parallel::getThreads(unsigned int taskSize, unsigned int maxThreads) const
{
    return setThreads(taskSize, maxThreads);
}

bool Parallel::isMaster() const
{
    return true;
}

Parallel::Info::Info(const char* name)
{
    if (!Parallel::getSingleton()->m_showDiagnostics || s_isInfoActive)
        return;
    m_start = std::make_unique<std::uint64_t>(0);
    s_isInfoActive = true;
    try
    {
        logBegin(this, name);
    }
    catch (...)
    {
        s_isInfoActive = false;
        throw;
    }
}

Parallel::Info::Info(const char* name, unsigned int taskSize, unsigned int maxThreads) : Info(name)
{
    report(Parallel::getSingleton()->setThreads(taskSize, maxThreads), taskSize);
}

Parallel::Info::~Info()
{
    if (m_start == nullptr)
        return;
    try
    {
        logEnd(this, *m_start);
    }
    catch (...)
    {
        // A diagnostic that is lost must not end the program.
    }
    s_isInfoActive = false;
}

bool Parallel::Info::report(unsigned int threads, unsigned int taskSize)
{
    if (m_start == nullptr)
        return false;
    logThreads(this, threads, taskSize);
    restartTimer();
    return true;
}

void Parallel::Info::restartTimer()
{
    if (m_start != nullptr)
        *m_start = getTicks();
}

unsigned int Parallel::Info::getThreadCount() const
{
    return Parallel::getSingleton()->getThreadCount();
}

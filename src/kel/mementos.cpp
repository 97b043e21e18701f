// SPDX-License-Identifier: MIT
// libkel: Commands and undo
#include <kel/mementos.h>

#include <kel/interrupted.h>
#include <kel/ownedqueue.h>
#include <kel/status.h>
#include <kel/zassert.h>

#include <algorithm>
#include <memory>

namespace
{
// The share of the steps that are done. It counts one more step than there are, so that the work of the caller after
// the last one still has its part of the range.
int percentOf(unsigned int done, unsigned int count)
{
    return static_cast<int>(static_cast<float>(done) / static_cast<float>(count + 1) * 100.0F);
}

int percentAbove(unsigned int base, unsigned int done, unsigned int count)
{
    const auto from = static_cast<float>(base);
    return static_cast<int>(from + (100.0F - from) * static_cast<float>(done) / static_cast<float>(count + 1));
}
} // namespace

Mementos::Mementos() = default;

Mementos::~Mementos()
{
    for (Memento* memento : m_mementos)
        delete memento;
}

void Mementos::add(Memento* memento)
{
    pushBackOwned(m_mementos, std::unique_ptr<Memento>(memento));
}

void Mementos::execute()
{
    KEL_ASSERT(!m_mementos.empty(), "!m_mementos.empty()");
    Status& status = Status::getSingleton();
    const unsigned int count = m_mementos.size();
    unsigned int done = 0;
    try
    {
        while (done < count)
        {
            Memento* const memento = m_mementos[done++];
            memento->execute();
            status.checkInterrupt(percentAbove(status.getPercentComplete(), done, count));
        }
    }
    catch (const Interrupted&)
    {
        truncate(done);
    }
}

void Mementos::undo()
{
    KEL_ASSERT(!m_mementos.empty(), "!m_mementos.empty()");
    Status& status = Status::getSingleton();
    const unsigned int count = m_mementos.size();
    std::reverse(m_mementos.begin(), m_mementos.end());
    for (unsigned int i = 0; i < count; ++i)
    {
        m_mementos[i]->undo();
        status.updateProgress(percentOf(i + 1, count));
    }
    std::reverse(m_mementos.begin(), m_mementos.end());
}

void Mementos::redo()
{
    KEL_ASSERT(!m_mementos.empty(), "!m_mementos.empty()");
    Status& status = Status::getSingleton();
    const unsigned int count = m_mementos.size();
    for (unsigned int i = 0; i < count; ++i)
    {
        m_mementos[i]->redo();
        status.updateProgress(percentOf(i + 1, count));
    }
}

// Cuts the list before it deletes anything, so that it never names what is gone. Needs no memory: the steps that ran
// could not be undone without it.
void Mementos::truncate(unsigned int count)
{
    const unsigned int all = m_mementos.size();
    m_mementos.clear();
    for (unsigned int i = 0; i < count; ++i)
        m_mementos.push_back(m_mementos[i]);
    for (unsigned int i = count; i < all; ++i)
        delete m_mementos[i];
}

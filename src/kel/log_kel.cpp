// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/log_kel.h>

#include <kel/dynamicfactory.h>
#include <kel/problem.h>
#include <kel/zassert.h>

namespace Kel
{
Log::Log() : Bulletin(getStaticKey()) {}

Log::~Log() = default;

const BulletinKey& Log::getStaticKey()
{
    static const BulletinKey s_key("Kel::Log");
    return s_key;
}

Log* Log::getSingleton()
{
    return &DynamicFactory::getSingleton().getOrCreate<Log>();
}

void Log::append(const Ztring&, Message::Type) {}

void Log::show() {}

void Log::append(const Problem& problem, Message::Type type)
{
    append(problem.getMessage(), type);
}

void Log::setStdErr(const Ztring& path)
{
    KEL_ASSERT(m_stdErr == nullptr, "!valid(m_stdErr)");
    if (!path.empty())
        m_stdErr = std::make_unique<std::ofstream>(path.toUtf8());
}
} // namespace Kel

// SPDX-License-Identifier: MIT
// libkel: benchmarks
// A class with the fields of a bulletin, whose key comes from the general heap.
#include "support/bulletinrows.h"

#include <memory>

namespace
{
uint32_t s_lastKey = 0;

class Plain
{
public:
    Plain() : m_key(std::make_unique<uint32_t>(++s_lastKey)) {}
    Plain(const Plain&) = delete;
    Plain& operator=(const Plain&) = delete;
    virtual ~Plain() { delete m_observers; }

private:
    std::unique_ptr<uint32_t> m_key;
    std::vector<void*>* m_observers = nullptr;
};

struct Maker
{
    using Object = Plain;
    static Plain* make() { return new Plain; }
    static void destroy(Plain* plain) { delete plain; }
};

const bool registered = bench::BulletinRows<Maker>::add("malloc");
} // namespace

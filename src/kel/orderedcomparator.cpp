// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/orderedcomparator.h>

#include <kel/autodelete.h>
#include <kel/orderedbulletins.h>

#include <algorithm>
#include <functional>
#include <vector>

void compareCollections(const OrderedBulletins& a, const OrderedBulletins& b, OrderedBulletins& result)
{
    std::vector<Bulletin*> known(a.begin(), a.end());
    std::sort(known.begin(), known.end(), std::less<>());
    // Counted beforehand: the result may be `b` itself.
    for (unsigned i = 0, count = b.size(); i < count; ++i)
    {
        if (!std::binary_search(known.begin(), known.end(), b[i], std::less<>()))
            result.append(b[i]);
    }
}

OrderedComparator::OrderedComparator(const OrderedBulletins& first, const OrderedBulletins& second)
    : m_onlyInFirst(std::make_unique<OrderedBulletins>(OrderedBulletins::getStaticKey())),
      m_onlyInSecond(std::make_unique<OrderedBulletins>(OrderedBulletins::getStaticKey()))
{
    compareCollections(first, second, *m_onlyInSecond);
    compareCollections(second, first, *m_onlyInFirst);
}

OrderedComparator::~OrderedComparator()
{
    const AutoDelete second(m_onlyInSecond.release());
    const AutoDelete first(m_onlyInFirst.release());
}

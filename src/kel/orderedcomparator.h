// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/kelapi.h>

#include <memory>

class OrderedBulletins;

/// Appends to `result` the bulletins of `b` that are not in `a`, in the order of `b`. Bulletins are compared by
/// identity, not by key; one that stands twice in `b` is appended twice.
KEL_API void compareCollections(const OrderedBulletins& a, const OrderedBulletins& b, OrderedBulletins& result);

/// The two differences between two lists of bulletins, compared by identity.
class KEL_API OrderedComparator
{
public:
    OrderedComparator(const OrderedBulletins& first, const OrderedBulletins& second);
    OrderedComparator(const OrderedComparator&) = delete;
    OrderedComparator& operator=(const OrderedComparator&) = delete;
    ~OrderedComparator();

    /// What the second list lacks, in the order of the first.
    const OrderedBulletins& getOnlyInFirst() const { return *m_onlyInFirst; }
    /// What the first list lacks, in the order of the second.
    const OrderedBulletins& getOnlyInSecond() const { return *m_onlyInSecond; }

private:
    std::unique_ptr<OrderedBulletins> m_onlyInFirst;
    std::unique_ptr<OrderedBulletins> m_onlyInSecond;
};

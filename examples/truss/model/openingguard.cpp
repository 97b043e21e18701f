// SPDX-License-Identifier: MIT
// truss: model
#include "truss/model/openingguard.h"

#include "truss/model/model.h"

#include <kel/problem.h>
#include <kel/translator.h>
#include <kel/zassert.h>

namespace truss
{
OpeningGuard* OpeningGuard::s_active = nullptr;

OpeningGuard::OpeningGuard()
{
    KEL_ASSERT(s_active == nullptr, "s_active == nullptr");
    s_active = this;
}

OpeningGuard::~OpeningGuard()
{
    s_active = nullptr;
    // Emptied first, so that no board destroys what is destroyed here, be it itself.
    for (Bulletin* const object : m_objects)
    {
        if (auto* const board = dynamic_cast<BulletinBoard*>(object))
            board->clear();
    }
    for (Bulletin* const object : m_objects)
        const AutoDelete destroyed(object);
}

void OpeningGuard::note(Bulletin& object)
{
    if (s_active != nullptr)
        s_active->m_objects.push_back(&object);
}

BulletinPtr<Model> OpeningGuard::release(Serializable* root)
{
    auto* const model = dynamic_cast<Model*>(root);
    if (model == nullptr)
        Problem::throwProblem(Translator::tr("The file does not hold a truss"));
    if (m_objects.size() != model->size() + 1)
        Problem::throwProblem(Translator::tr("The file holds objects that do not belong to its truss"));
    m_objects.clear();
    return BulletinPtr<Model>(model);
}
} // namespace truss

// SPDX-License-Identifier: MIT
// truss: document
#include "truss/document/replacement.h"

namespace truss
{
const Replacement* Replacement::s_active = nullptr;

Replacement::Replacement(const Kel::File& target) : m_target(target)
{
    s_active = this;
}

Replacement::~Replacement()
{
    s_active = nullptr;
}

bool Replacement::isOf(const Kel::File& file)
{
    return s_active != nullptr && s_active->m_target.getPath() == file.getPath();
}
} // namespace truss

// SPDX-License-Identifier: MIT
// A bulletin that writes down what is done to it.
#pragma once

#include <kel/bulletin.h>

#include <string>
#include <utility>
#include <vector>

/// What happened, in order: "name?" when the object was asked whether it may be deleted, "name!" when it was about to
/// be deleted, "~name" when it was.
using Story = std::vector<std::string>;

class Tracked : public Bulletin
{
public:
    Tracked(Story& story, std::string name) : m_story(story), m_name(std::move(name)) {}
    Tracked(Story& story, std::string name, const BulletinKey& key)
        : Bulletin(key),
          m_story(story),
          m_name(std::move(name))
    {
    }
    ~Tracked() override { m_story.push_back("~" + m_name); }

    bool canDelete() override
    {
        m_story.push_back(m_name + "?");
        return !refuses;
    }

    void preDelete() override
    {
        m_story.push_back(m_name + "!");
        Bulletin::preDelete();
    }

    Tracked* clone() const override { return new Tracked(*this); }

    bool refuses = false;

private:
    Story& m_story;
    std::string m_name;
};

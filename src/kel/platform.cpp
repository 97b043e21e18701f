// SPDX-License-Identifier: MIT
// libkel: Application services
#include <kel/platform.h>

#include <kel/dynamicfactory.h>
#include <kel/file_kel.h>
#include <kel/timer.h>
#include <kel/ztring.h>

#include "totext_p.h"

#include <climits>

Platform::Platform() : Bulletin(getStaticKey()) {}

Platform::~Platform() = default;

const BulletinKey& Platform::getStaticKey()
{
    static const BulletinKey s_key("Platform");
    return s_key;
}

Platform* Platform::getSingleton()
{
    return static_cast<Platform*>(DynamicFactory::getSingleton().getPtr(getStaticKey()));
}

void Platform::run(const Ztring& command, const Ztring& arguments, const Kel::File& file, bool flag1, bool flag2)
{
    Ztring commandLine(command);
    if (!arguments.empty())
        commandLine.append(" ").append(arguments);
    if (!file.empty())
        commandLine.append(" ").append(file.getQuotedFile());
    execute(commandLine, flag1, flag2);
}

void Platform::startTimer(Task* task)
{
    startTimer(task, Timer::INTERVAL);
}

unsigned int Platform::getArchBit()
{
    return sizeof(void*) * CHAR_BIT;
}

std::string Platform::getOsBitName()
{
    const Ztring name("%1%2");
    name.argReplace(getOsName());
    name.argReplace(toText(getArchBit()));
    return name.str();
}

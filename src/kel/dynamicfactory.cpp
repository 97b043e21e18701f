// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/dynamicfactory.h>

#include <kel/changednotifier.h>
#include <kel/namedkeys.h>
#include <kel/tooltips.h>

// Services are destroyed with the factory and may ask for names and tool tips even then, or tell of a change: what that
// takes is made first, so that it dies last.
DynamicFactory::DynamicFactory()
{
    NamedKeys::getSingleton();
    ToolTips::getSingleton();
    const ChangedNotifier withPlaceholder(*this);
}

DynamicFactory& DynamicFactory::getSingleton()
{
    static DynamicFactory singleton;
    return singleton;
}

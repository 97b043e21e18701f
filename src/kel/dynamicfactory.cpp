// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/dynamicfactory.h>

#include <kel/namedkeys.h>
#include <kel/tooltips.h>

// Services are destroyed with the factory and may ask for names and tool tips even then: these registries are made
// first, so that they die last.
DynamicFactory::DynamicFactory()
{
    NamedKeys::getSingleton();
    ToolTips::getSingleton();
}

DynamicFactory& DynamicFactory::getSingleton()
{
    static DynamicFactory singleton;
    return singleton;
}

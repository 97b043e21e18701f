// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/array.h>
#include <kel/kelapi.h>

class Bulletin;

/// A list of bulletins, none of them owned.
class KEL_API BulletinVector : public Array<Bulletin*>
{
};

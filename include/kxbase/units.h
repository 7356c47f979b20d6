/// \file
/// Public headers of the units subsystem.
#pragma once

#include <kxbase/platform.h>
#include <kxbase/units/units.h>
#include <kxbase/units/unit_trans.h>

/// \file
/// Public headers of the mathopt subsystem.
#pragma once

#include <kxbase/platform.h>
#include <kxbase/mathopt/raster_fraction.h>
#include <kxbase/mathopt/amathopt.h>

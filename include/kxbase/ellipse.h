// Public headers of the ellipse subsystem.
#pragma once

#include <kxbase/platform.h>

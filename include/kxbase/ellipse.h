/// \file
/// Public headers of the ellipse subsystem.
#pragma once

#include <kxbase/platform.h>
#include <kxbase/ellipse/records.h>
#include <kxbase/ellipse/ellipse.h>

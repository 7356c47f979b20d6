/// \file
/// Public headers of the geometry subsystem.
#pragma once

#include <kxbase/platform.h>
#include <kxbase/geometry/pointd.h>
#include <kxbase/geometry/rectd.h>
#include <kxbase/geometry/precise.h>
#include <kxbase/geometry/trans_matrix.h>
#include <kxbase/geometry/transform.h>

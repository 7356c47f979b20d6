/// \file
/// The number and message helpers moved to <kxbase/base.h>; the old umbrella keeps working.
#pragma once

#include <kxbase/base.h>

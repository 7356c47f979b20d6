/// \file
/// This header moved to <kxbase/base/bitmap.h>; the old path keeps working.
#pragma once

#include <kxbase/base/bitmap.h>

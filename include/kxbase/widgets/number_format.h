/// \file
/// This header moved to <kxbase/base/number_format.h>; the old path keeps working.
#pragma once

#include <kxbase/base/number_format.h>

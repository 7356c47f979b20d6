/// \file
/// This header moved to <kxbase/base/int64_parse.h>; the old path keeps working.
#pragma once

#include <kxbase/base/int64_parse.h>

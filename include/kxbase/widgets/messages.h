/// \file
/// This header moved to <kxbase/base/messages.h>; the old path keeps working.
#pragma once

#include <kxbase/base/messages.h>

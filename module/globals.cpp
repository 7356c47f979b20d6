// The library's global objects, defined in one translation unit so that they are
// constructed in this order at load and destroyed in the reverse order at unload.
#include <kxbase/runtime/error_info.h>

CErrorInfo g_Error;

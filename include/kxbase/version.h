// kxBaseCommon version. CMake reads these three macros; keep them on their own lines.
#pragma once

#define KXBASE_VERSION_MAJOR 1
#define KXBASE_VERSION_MINOR 0
#define KXBASE_VERSION_PATCH 0
#define KXBASE_VERSION_STRING "1.0.0"

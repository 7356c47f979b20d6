/// \file
/// kxBaseCommon version. CMake reads these three macros; keep them on their own lines.
#pragma once

#define KXBASE_VERSION_MAJOR 1  ///< changes with anything that breaks hosts (see the README)
#define KXBASE_VERSION_MINOR 0  ///< changes with additions
#define KXBASE_VERSION_PATCH 0  ///< changes with fixes only
#define KXBASE_VERSION_STRING "1.0.0"  ///< the three numbers as text, "MAJOR.MINOR.PATCH"

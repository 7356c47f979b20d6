// ACompress: the raster codecs (LZW, run-length per bit depth, bit-depth packing, line zoom,
// Base64). Every operation is static and re-entrant once Init() has built the shared tables.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

class KXBASE_API ACompress {
public:
    // ---- LZW and Base64 -------------------------------------------------------------------
    // (declarations of the LZW codec, Base64 and Init/Exit go here)

    // ---- run-length, bit-depth packing and line zoom --------------------------------------
    // (declarations of the run-length codecs, packing dispatchers and line zoom go here)

protected:
    // ---- LZW and Base64: protected helpers --------------------------------------------------

    // ---- run-length and bit packing: protected helpers --------------------------------------
};

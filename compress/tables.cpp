// The shared bit tables of ACompress and its start-up hooks.
//
// Both tables are constant data laid out by the compiler, so they exist before any code of
// the library runs: the 1-bit unpackers can use them from any thread, and a host that never
// calls Init still gets correct results. Init and Exit remain as the module's start-up and
// shut-down hooks.
#include <kxbase/compress/compress.h>

// One row of the bit table: the bits of v from the most to the least significant.
#define KX_BITS(v)                                                                      \
    {                                                                                   \
        ((v) >> 7) & 1, ((v) >> 6) & 1, ((v) >> 5) & 1, ((v) >> 4) & 1, ((v) >> 3) & 1, \
            ((v) >> 2) & 1, ((v) >> 1) & 1, (v)&1                                       \
    }
#define KX_BITS4(v) KX_BITS(v), KX_BITS((v) + 1), KX_BITS((v) + 2), KX_BITS((v) + 3)
#define KX_BITS16(v) KX_BITS4(v), KX_BITS4((v) + 4), KX_BITS4((v) + 8), KX_BITS4((v) + 12)
#define KX_BITS64(v) KX_BITS16(v), KX_BITS16((v) + 16), KX_BITS16((v) + 32), KX_BITS16((v) + 48)

constinit const BYTE ACompress::m_byBitTable[256][8] = {KX_BITS64(0), KX_BITS64(64), KX_BITS64(128),
                                                        KX_BITS64(192)};

// Row k starts at bit 6 of k, the second byte of k's row in the bit table.
#define KX_ROW(k) &ACompress::m_byBitTable[k][1]
#define KX_ROW4(k) KX_ROW(k), KX_ROW((k) + 1), KX_ROW((k) + 2), KX_ROW((k) + 3)
#define KX_ROW16(k) KX_ROW4(k), KX_ROW4((k) + 4), KX_ROW4((k) + 8), KX_ROW4((k) + 12)
#define KX_ROW64(k) KX_ROW16(k), KX_ROW16((k) + 16), KX_ROW16((k) + 32), KX_ROW16((k) + 48)

constinit const BYTE* const ACompress::m_pRowTable[128] = {KX_ROW64(0), KX_ROW64(64)};

#undef KX_BITS
#undef KX_BITS4
#undef KX_BITS16
#undef KX_BITS64
#undef KX_ROW
#undef KX_ROW4
#undef KX_ROW16
#undef KX_ROW64

int ACompress::Init() {
    return 1;
}

int ACompress::Exit() {
    return 1;
}

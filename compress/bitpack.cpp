// The depth dispatchers Pack and UnPack.
#include <kxbase/compress/compress.h>

#include "compress/bitpack_p.h"

int ACompress::Pack(const BYTE* src, ULONG srcLen, int depth, BYTE* dst, ULONG dstCap,
                    ULONG& dstLen) {
    switch (depth) {
        case 1:
            return Pack1(src, srcLen, dst, dstCap, dstLen);
        case 2:
            return Pack2(src, srcLen, dst, dstCap, dstLen);
        case 4:
            return Comp_RLE4(src, srcLen, dst, dstCap, dstLen);
        case 8:
            return Comp_RLE8(src, srcLen, dst, dstCap, dstLen);
        case 24:
            return Comp_RLE24(src, srcLen, dst, dstCap, dstLen);
        default:
            return 0;
    }
}

int ACompress::UnPack(const BYTE* src, ULONG srcLen, ULONG total, int depth, BYTE* dst) {
    switch (depth) {
        case 1:
            return UnPack1(src, srcLen, total, dst);
        case 2:
            return UnPack2(src, srcLen, total, dst);
        case 4:
            return UnComp_RLE4(src, srcLen, total, 0, total, dst);
        case 8:
            return UnComp_RLE8(src, srcLen, total, 0, total, dst);
        case 24:
            return UnComp_RLE24(src, srcLen, 0, total, total, dst);
        default:
            return 0;
    }
}

int ACompress::UnPack(const BYTE* src, ULONG srcLen, ULONG total, int depth, ULONG start,
                      ULONG count, BYTE* dst) {
    switch (depth) {
        case 1:
        case 2:
            return kxbase::detail::UnPackWindow12(m_pRowTable, src, srcLen, total, depth, start,
                                                  count, dst);
        case 4:
            return UnComp_RLE4(src, srcLen, total, start, count, dst);
        case 8:
            return UnComp_RLE8(src, srcLen, total, start, count, dst);
        case 24:
            return UnComp_RLE24(src, srcLen, start, count, total, dst);
        default:
            return 0;
    }
}

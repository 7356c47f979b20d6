// The general run-length byte format: runs (count, value) and literal blocks (0, n, bytes).
#include <cstring>

#include <kxbase/compress/compress.h>

int ACompress::Comp_RLE(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen) {
    if (!src || srcLen == 0 || !dst || dstCap == 0) return 0;
    dstLen = 0;

    BYTE pending = src[0];  // the byte whose run is being counted
    ULONG run = 1;
    bool blockOpen = false;  // a literal block is open ...
    ULONG nPos = 0;          // ... its n byte lies here ...
    ULONG n = 0;             // ... and it holds n bytes so far

    auto closeBlock = [&] {
        if (blockOpen) dst[nPos] = static_cast<BYTE>(n);
        blockOpen = false;
    };
    auto writeRun = [&](ULONG r, BYTE v) {
        if (UINT64{dstLen} + 2 > dstCap) return false;
        dst[dstLen++] = static_cast<BYTE>(r);
        dst[dstLen++] = v;
        return true;
    };

    for (ULONG i = 1; i < srcLen; ++i) {
        const BYTE b = src[i];
        if (b == pending) {
            if (run == 255) {
                closeBlock();
                if (!writeRun(255, pending)) return 0;
                run = 1;
            } else {
                ++run;
            }
        } else if (run > 1) {
            closeBlock();
            if (!writeRun(run, pending)) return 0;
            run = 1;
        } else if (!blockOpen) {
            if (UINT64{dstLen} + 3 > dstCap) return 0;
            dst[dstLen++] = 0;
            nPos = dstLen;
            dst[dstLen++] = 0;  // n, stored when the block closes
            dst[dstLen++] = pending;
            n = 1;
            blockOpen = true;
        } else {
            // The block's bytes so far may have filled dst exactly (a block opened with three
            // bytes left): the append then fails without writing past the buffer.
            if (dstLen >= dstCap) return 0;
            dst[dstLen++] = pending;
            if (n == 254) {
                n = 255;
                closeBlock();
            } else {
                ++n;
            }
            if (dstLen >= dstCap) return 0;
        }
        pending = b;
    }
    closeBlock();
    // The last pending byte is always a run record, also a run of one.
    return writeRun(run, pending) ? 1 : 0;
}

int ACompress::UnComp_RLE(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen) {
    if (!src || srcLen == 0 || !dst || dstCap == 0) return 0;
    dstLen = 0;
    ULONG pos = 0;
    while (pos < srcLen) {
        const ULONG c = src[pos];
        if (srcLen - pos < 2) return 0;  // a record cut after its first byte
        if (c > 0) {
            if (UINT64{dstLen} + c > dstCap) return 0;
            std::memset(dst + dstLen, src[pos + 1], c);
            dstLen += c;
            pos += 2;
        } else {
            const ULONG nb = src[pos + 1];
            if (srcLen - pos - 2 < nb) return 0;  // a literal block cut short
            if (UINT64{dstLen} + nb > dstCap) return 0;
            std::memcpy(dst + dstLen, src + pos + 2, nb);
            dstLen += nb;
            pos += nb + 2;
        }
    }
    return 1;
}

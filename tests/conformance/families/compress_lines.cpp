// Golden-vector handlers of the codec routines that restore, locate or convert pixels of one
// line in place: windowed restores, look-ups, segments, bit-depth shrink and expand, zoom.
#include <vector>

#include "compress_probe.h"

namespace {

using conf::buf;
using conf::call;
using conf::in;
using conf::json;
using cz::Probe;
using cz::Untouched;
using U = ULONG;

const auto src = buf("src");
const auto srcLen = in<U>("srcLen");
const auto dst = buf("dst").to();  // expect.dst is the whole buffer after the call
const auto start = in<U>("start"), count = in<U>("count"), total = in<U>("total"),
           pos = in<U>("pos");
const auto depth = in<int>("depth");

// The windowed restores fn(src, srcLen, total, start, count, dst).
conf::Handler Window(int (*fn)(const BYTE*, U, U, U, U, BYTE*)) {
    return call(fn, src, srcLen, total, start, count, dst);
}
// Segment digits of the packed 1- and 2-bit formats.
conf::Handler Seg(U (*fn)(const BYTE*, U, U, BYTE&, U&, int)) {
    return call(fn, src, in<U>("offset"), in<U>("bytes"), conf::kept<BYTE>("runValue", 0xEE),
                Untouched("count"), in<int>("whole"));
}
conf::Handler Loc12(int (*fn)(U, U, const BYTE*, U, U*, U*, U*, U*)) {
    return call(fn, pos, total, src, srcLen, Untouched("offset").ptr(), Untouched("bytes").ptr(),
                Untouched("inside").ptr(), Untouched("pixels").ptr());
}

// ResampleLine: "inPlace" passes the source buffer as the destination too.
json Resample(const json& a) {
    const bool inPlace = a.value("inPlace", false);
    conf::Hex s = conf::Codec<conf::Hex>::get(a.at("src")), d;
    if (!inPlace && !a.value("dst", json()).is_null()) d = conf::Codec<conf::Hex>::get(a["dst"]);
    std::vector<U> map;
    if (!a.at("map").is_null()) map = conf::Codec<std::vector<U>>::get(a["map"]);
    BYTE* out = inPlace ? s.data() : d.empty() ? nullptr : d.data();
    const int r = ACompress::ResampleLine(
        s.data(), conf::i32(a.at("depth")), conf::i32(a.at("srcCount")), out,
        conf::i32(a.at("dstCount")), map.empty() ? nullptr : map.data());
    return json{{"value", r}, {"dst", conf::put(inPlace ? s : d)}};
}

const conf::Register reg{
    {"ACompress::UnComp_RLE8", Window(Probe::UnComp_RLE8)},
    {"ACompress::UnComp_RLE4", Window(Probe::UnComp_RLE4)},
    {"ACompress::UnComp_RLE24", call(Probe::UnComp_RLE24, src, srcLen, start, count, total, dst)},
    {"ACompress::UnPack(window)",
     call([](const BYTE* s, U n, U t, int d, U b, U c,
             BYTE* o) { return ACompress::UnPack(s, n, t, d, b, c, o); },
          src, srcLen, total, depth, start, count, dst)},
    {"ACompress::UnPack",
     call([](const BYTE* s, U n, U t, int d, BYTE* o) { return ACompress::UnPack(s, n, t, d, o); },
          src, srcLen, total, depth, dst)},
    {"ACompress::UnPack1", call(Probe::UnPack1, src, srcLen, in<U>("pixels"), dst)},
    {"ACompress::UnPack2", call(Probe::UnPack2, src, srcLen, in<U>("pixels"), dst)},
    {"ACompress::GetLoc_RLE1", Loc12(Probe::GetLoc_RLE1)},
    {"ACompress::GetLoc_RLE2", Loc12(Probe::GetLoc_RLE2)},
    {"ACompress::GetLoc_RLE8",
     call(Probe::GetLoc_RLE8, pos, total, src, srcLen, Untouched("offset").ptr(),
          Untouched("before").ptr(), Untouched("count").ptr())},
    {"ACompress::GetLoc_RLE24", call(Probe::GetLoc_RLE24, pos, total, src, srcLen,
                                     Untouched("offset").ptr(), Untouched("before").ptr())},
    {"ACompress::GetLoc_RLE4", call(Probe::GetLoc_RLE4, pos, total, src, srcLen,
                                    Untouched("offset").ptr(), Untouched("left").ptr())},
    {"ACompress::UnPackSeg1", Seg(Probe::UnPackSeg1)},
    {"ACompress::UnPackSeg2", Seg(Probe::UnPackSeg2)},
    // A null dst shrinks over buf.
    {"ACompress::ShrinkBit", call(ACompress::ShrinkBit, buf("buf").to(), start, count, depth, dst)},
    {"ACompress::ExpandBit", call(ACompress::ExpandBit, src, start, count, depth, dst)},
    {"ACompress::ZoomBits",
     call(ACompress::ZoomBits, in<int>("srcWidth"), in<int>("srcHeight"),
          in<unsigned short>("depth"), src, in<int>("dstWidth"), in<int>("dstHeight"), dst)},
    {"ACompress::ResampleLine", Resample},
};

}  // namespace

// Golden vectors of the units family: conversions, comparisons, names and CUnitTrans.
#include <kxbase/units.h>

#include "conformance.h"

namespace {

using conf::call;
using conf::in;
using conf::out;

const auto res = in<double>("res");
const auto unit = in<AResUnit>("unit");
const auto size = in<ASizeUnit>("unit");
// (value, res, resUnit, unit)
template <class R>
conf::Handler OfSize(R (*fn)(double, double, AResUnit, ASizeUnit)) {
    return call(fn, in<double>("value"), res, in<AResUnit>("resUnit"), size);
}
// A unit's name as text and as a bounded copy ("size" bytes) into a buffer.
template <class U>
conf::Handler Name(int (*fn)(CString&, U)) {
    return conf::call_as("count", fn, out("text", CString("stale")), in<U>("unit"));
}
template <class U>
conf::Handler NameBuffer(int (*fn)(char*, int, U)) {
    return conf::call_as(
        "count",
        [fn](std::string& text, int n, U u) {
            char buf[64] = "stale";
            if (n > static_cast<int>(sizeof buf)) throw std::runtime_error("size");
            const int r = fn(buf, n, u);
            text = buf;
            return r;
        },
        out<std::string>("text"), in<int>("size"), in<U>("unit"));
}
const auto pair = [](int (*fn)(double, double)) {
    return call(fn, in<double>("a"), in<double>("b"));
};

// CUnitTrans with its two members read from and reported as "length" and "resolution".
template <class F, class... A>
conf::Handler Trans(F f, A... more) {
    return call(
        [f](double& length, double& resolution, auto... x) {
            CUnitTrans t;
            t.m_dLength = length, t.m_dResolution = resolution;
            const auto r = f(t, x...);
            length = t.m_dLength, resolution = t.m_dResolution;
            return r;
        },
        conf::opt("length", 0.0).to(), conf::opt("resolution", 0.0).to(), more...);
}

const conf::Register reg{
    {"ToDPMM", call(ToDPMM, res, unit)},
    {"ToDPI", call(ToDPI, res, unit)},
    {"ToNDPI", call(ToNDPI, res, unit)},
    {"IsValidRes", call(IsValidRes, res, unit)},
    {"RightRes", call(RightRes, res, unit)},
    {"DefResPrecision", call(DefResPrecision, unit)},
    {"ToINCH", OfSize(ToINCH)},
    {"ToMM", OfSize(ToMM)},
    {"ToPIXEL", OfSize(ToPIXEL)},
    {"ToNPIXEL", OfSize(ToNPIXEL)},
    {"EqualNDPI", pair(EqualNDPI)},
    {"EqualDPMM", pair(EqualDPMM)},
    {"EqualDPI", pair(EqualDPI)},
    {"EqualRes", call(EqualRes, in<double>("a"), in<double>("b"), unit, in<int>("integer"))},
    {"SizeUnitString", Name<ASizeUnit>(SizeUnitString)},
    {"ResUnitString", Name<AResUnit>(ResUnitString)},
    {"SizeUnitString(char*,int)", NameBuffer<ASizeUnit>(SizeUnitString)},
    {"ResUnitString(char*,int)", NameBuffer<AResUnit>(ResUnitString)},
    {"ConvertSize", call(ConvertSize, in<double>("value"), in<ASizeUnit>("from"),
                         in<ASizeUnit>("to"), res, in<AResUnit>("resUnit"), in<int>("toInteger"))},
    {"ConvertRes",
     call(ConvertRes, res, in<AResUnit>("from"), in<AResUnit>("to"), in<int>("toInteger"))},
    {"CUnitTrans::GetValue",
     Trans([](CUnitTrans& t, ASizeUnit u, int d, int i) { return t.GetValue(u, d, i); }, size,
           in<int>("digits"), in<int>("toInteger"))},
    {"CUnitTrans::SetParams", Trans([](CUnitTrans& t, double v, double r, AResUnit ru,
                                       ASizeUnit u) { return t.SetParams(v, r, ru, u); },
                                    in<double>("value"), res, in<AResUnit>("resUnit"), size)},
    {"CUnitTrans::SetRes",
     Trans([](CUnitTrans& t, double r, AResUnit u) { return t.SetRes(r, u); }, res, unit)},
    {"CUnitTrans::IsValid", Trans([](CUnitTrans& t) { return t.IsValid(); })},
};

}  // namespace

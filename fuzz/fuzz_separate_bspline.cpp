// Drives SEPARATE's converters and span layouts with arbitrary counts, modes and coordinates
// (NaN, infinities, huge values): no out-of-bounds access, no undefined conversion, and the
// written count never exceeds the room the contract asks the caller for.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <kxbase/separate/separate.h>

namespace {

struct Probe : SEPARATE {
    using SEPARATE::GetMyBSCtrl;
    using SEPARATE::GetMyEBSCtrl;
};

constexpr std::size_t kMaxPoints = 4096;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const int mode = data[0] & 1 ? static_cast<int>(data[0]) : 0;
    // The claimed count: usually the true count, sometimes a wrong or negative one (which
    // must be refused when it does not suit the mode, and is then never used to index).
    const std::uint8_t claim = data[1];
    data += 2;
    size -= 2;

    std::size_t n = size / 16;
    if (n > kMaxPoints) n = kMaxPoints;
    std::vector<POINTD> pd(n);
    std::vector<POINT> pi(n);
    for (std::size_t i = 0; i < n; ++i) {
        std::memcpy(&pd[i].x, data + 16 * i, 8);
        std::memcpy(&pd[i].y, data + 16 * i + 8, 8);
        std::memcpy(&pi[i].x, data + 16 * i, 4);
        std::memcpy(&pi[i].y, data + 16 * i + 8, 4);
    }
    int count = static_cast<int>(n);
    if (claim == 0xFF)
        count = -static_cast<int>(n) - 1;
    else if (claim >= 0xF0)
        count = static_cast<int>(n) - (claim & 0x0F);  // smaller claims only

    const std::size_t room = n < 2 ? 4 : 4 * n;
    std::vector<POINTD> od(room);
    std::vector<POINT> oi(room);
    int outCount = -1;
    if (SEPARATE::BSplineToBezier(pd.data(), count, od.data(), outCount, mode) &&
        (outCount < 0 || static_cast<std::size_t>(outCount) > room))
        std::abort();
    outCount = -1;
    if (SEPARATE::BSplineToBezier(pi.data(), count, oi.data(), outCount, mode) &&
        (outCount < 0 || static_cast<std::size_t>(outCount) > room))
        std::abort();

    std::vector<POINTD> layout(pd);
    layout.resize(room);
    Probe::GetMyBSCtrl(layout.data(), count);
    layout.assign(pd.begin(), pd.end());
    layout.resize(room);
    Probe::GetMyEBSCtrl(layout.data(), count);
    return 0;
}

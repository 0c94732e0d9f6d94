#pragma once
#include <cstdint>

/// A rectangle as records and callers pass it: right and bottom lie outside.
struct RECT {
    std::int32_t left = 0, top = 0, right = 0, bottom = 0;
    bool operator==(const RECT&) const = default;
};

struct CPoint {
    int x = 0, y = 0;
    bool operator==(const CPoint&) const = default;
};

struct CSize {
    int cx = 0, cy = 0;
    bool operator==(const CSize&) const = default;
};

/// Width and height of a block of samples.
struct IppiSize {
    std::int32_t width = 0, height = 0;
};

#pragma once
#include "document/fixtures.h"

/// A document with an image that is a slope, of two sub-images.
class SlopeTest : public DocumentTest {
protected:
    /// 8 x 4, two sub-images: raw 20 * column + 100 * row, the second 1000 higher.
    SlopeTest()
    {
        SPMDataStream stream = heights("Topo", {8, 4}, 2);
        auto* samples = static_cast<short*>(stream.array_data());
        for (int i = 0; i < 64; ++i)
            samples[i] = static_cast<short>(20 * (i % 8) + 100 * (i / 8 % 4) + (i >= 32 ? 1000 : 0));
        stream.get_dimension(0).set_axis(1, VLAxis(7, 2, "ms"));
        document.AddNewImages(&stream, 1);
        document.SetModifiedFlag(false);
    }
    /// Raw height of the plane at a place of axis 0.
    double heightAt(double x, double y) const { return 20.0 * x / 0.25 + 100.0 * (y - 0.5) / 0.25; }
};

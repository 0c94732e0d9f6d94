#pragma once
#include "platform/draw/DC.h"

#include <cstddef>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace test_support {
struct decoded_picture;
}

/// Drawings compared with the pictures in data/, pixel by pixel; only where texts stand a font may be rasterised a
/// little differently.
///
/// A drawing that differs is written to the folder of temporary files for a look. To renew pictures after an intended
/// change, run the test program with VLDV_RENEW_PICTURES set to their folder, look at each changed picture, and say in
/// the commit what was looked at.
///
/// What was drawn on a white picture in memory, and where texts stand on it.
class golden_picture {
public:
    golden_picture(CSize size_, const std::function<void(CDC&)>& draw);

    /// 0xRRGGBB
    unsigned at(int x, int y) const;
    /// The box of the first such text; empty when there is none.
    CRect textBox(const std::wstring& text) const;
    /// Pixels of a colour within a part.
    int count(unsigned color, const CRect& part) const;

    testing::AssertionResult equals(const std::string& name) const;

private:
    struct drawn_text {
        std::wstring text;
        CRect box;
    };
    class recording_surface;
    bool isText(int x, int y) const;
    /// The first that is not as in the other; empty when there is none.
    std::string difference(const test_support::decoded_picture& golden) const;

    CSize size;
    std::vector<std::byte> pixels; ///< blue, green, red and one more; the top row last
    std::vector<drawn_text> texts;
};

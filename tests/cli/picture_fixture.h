#pragma once
#include "output/picture_decoders.h"
#include "program_fixture.h"

class PictureTest : public ProgramTest {
protected:
    /// The top row first, each 0xRRGGBB; nothing for a picture of another size.
    std::vector<unsigned> pixels(const std::string& name, int width, int height) const
    {
        const std::string file = file_content(folder / name);
        const auto bytes = std::as_bytes(std::span(file));
        const test_support::decoded_picture picture =
            name.ends_with(".png") ? test_support::decode_png(bytes) : test_support::decode_bmp(bytes);
        std::vector<unsigned> out;
        if (picture.width != width || picture.height != height) return out;
        for (std::size_t i = 0; i + 2 < picture.rgb.size(); i += 3)
            out.push_back(unsigned{picture.rgb[i]} << 16 | unsigned{picture.rgb[i + 1]} << 8 | picture.rgb[i + 2]);
        return out;
    }
};

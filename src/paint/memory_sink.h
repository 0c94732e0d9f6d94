#pragma once
#include "paint/raster/pixel_rows.h"
#include "paint/raster/pixel_sink.h"

namespace vldv::paint {

/// Writes pixels straight into memory.
class memory_sink : public pixel_sink {
public:
    explicit memory_sink(const pixel_rows& rows_) : rows(rows_) {}

    CSize size() const override { return {rows.width, rows.height}; }
    bool isIn(const std::byte* bits) const override;
    void fill(std::span<const CRect> rects, colorEntry color, raster_op op) override;
    void put(const pixel_block& block, const CRect& part, raster_op op) override;
    void blend(const pixel_block& block, const CRect& part) override;

private:
    pixel_rows rows;
};

} // namespace vldv::paint

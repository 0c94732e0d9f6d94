#pragma once
#include "paint/qt_fonts.h"

#include <QFontMetrics>

namespace vldv::paint {

/// A font value with what the toolkit made of it.
struct resolved_font {
    CFont asked;
    font_scale scale;
    QFont font;
    QFontMetrics metrics;

    resolved_font(const CFont& asked_, const font_scale& scale_)
        : asked(asked_), scale(scale_), font(qt_font(asked_, scale_)), metrics(font)
    {
    }
};

} // namespace vldv::paint

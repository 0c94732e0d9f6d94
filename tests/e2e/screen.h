#pragma once
#include <QImage>
#include <algorithm>

/// What a test recognises on the screen.
namespace screen {

inline bool is_caption(QRgb pixel) { return qBlue(pixel) > qRed(pixel) + 100 && qGreen(pixel) > qRed(pixel) + 50; }
inline bool is_brown(QRgb pixel) { return qRed(pixel) > qBlue(pixel) + 40; }
inline bool is_green(QRgb pixel) { return qGreen(pixel) > qRed(pixel) + 20 && qGreen(pixel) > qBlue(pixel) + 20; }

/// Box of the pixels of a kind inside `part`.
template <class Kind>
QRect box_of(const QImage& shown, const QRect& part, Kind kind)
{
    QRect box;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x)
            if (kind(shown.pixel(x, y))) box |= QRect(x, y, 1, 1);
    return box;
}

template <class Kind>
double share_of(const QImage& shown, const QRect& part, Kind kind)
{
    int count = 0;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x) count += kind(shown.pixel(x, y));
    return static_cast<double>(count) / std::max(part.width() * part.height(), 1);
}

/// The area of frames: below menus and tools, above the status line.
constexpr QRect area(0, 60, 1280, 810);

/// The caption of the active frame.
inline QRect caption(const QImage& shown) { return box_of(shown, area, is_caption); }

/// Where the active frame shows its data: a strip of it below caption and tabs.
inline QRect inside(const QImage& shown)
{
    const QRect above = caption(shown);
    return QRect(above.left() + 70, above.bottom() + 60, 300, 200).intersected(shown.rect());
}

} // namespace screen

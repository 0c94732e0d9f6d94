#include "host/window/BoxStyle.h"

#include <QPainter>
#include <QStyleOption>

namespace vldv::host {

void CBoxStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element != PE_IndicatorCheckBox && element != PE_IndicatorItemViewItemCheck) return;
    constexpr double strength = 0.6;
    QColor line = option->palette.color(QPalette::WindowText);
    line.setAlphaF(static_cast<float>(strength));
    painter->save();
    painter->setPen(line);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    painter->restore();
}

} // namespace vldv::host

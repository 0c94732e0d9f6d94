#pragma once
#include <QProxyStyle>

namespace vldv::host {

/// The toolkit's style with check boxes whose frame is seen on dark grounds, too: it takes the colour of the text.
class CBoxStyle : public QProxyStyle {
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};

} // namespace vldv::host

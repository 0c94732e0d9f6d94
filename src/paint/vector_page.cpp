#include "platform/draw/vector_page.h"

#include "paint/QtDC.h"
#include "paint/windowless_toolkit.h"

#include <QBuffer>
#include <QPageSize>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <cmath>

namespace vldv::paint {

namespace {

constexpr int pixelsAnInch = 96;
constexpr double pointsAPixel = 72.0 / pixelsAnInch;

/// A title as it stands in a document of XML, which holds no control characters.
QString xml_text(QString text)
{
    for (QChar& each : text)
        if (each < u' ' || each == QChar(0xFFFE) || each == QChar(0xFFFF)) each = u' ';
    return text.toHtmlEscaped();
}

std::unique_ptr<QPaintDevice> svg_device(const platform::vector_page_form& form, QIODevice& into)
{
    auto made = std::make_unique<QSvgGenerator>();
    made->setOutputDevice(&into);
    made->setSize({form.pixels.cx, form.pixels.cy});
    made->setViewBox(QRect(0, 0, form.pixels.cx, form.pixels.cy));
    made->setResolution(pixelsAnInch);
    // The toolkit writes it as it stands.
    made->setTitle(xml_text(QString::fromStdWString(form.title)));
    made->setDescription(QStringLiteral("vldv"));
    return made;
}

std::unique_ptr<QPaintDevice> pdf_device(const platform::vector_page_form& form, QIODevice& into)
{
    auto made = std::make_unique<QPdfWriter>(&into);
    made->setResolution(pixelsAnInch);
    // The toolkit keeps whole points: no pixel is cut off.
    const QSizeF points(std::ceil(form.pixels.cx * pointsAPixel), std::ceil(form.pixels.cy * pointsAPixel));
    made->setPageSize(QPageSize(points, QPageSize::Point, {}, QPageSize::ExactMatch));
    made->setPageMargins({});
    made->setTitle(QString::fromStdWString(form.title));
    made->setCreator(QStringLiteral("vldv"));
    return made;
}

class vector_page : public IVectorPage {
public:
    explicit vector_page(const platform::vector_page_form& form)
    {
        buffer.open(QIODevice::WriteOnly);
        device = form.format == platform::vector_format::pdf ? pdf_device(form, buffer) : svg_device(form, buffer);
        surface = std::make_unique<CQtDC>(*device);
    }
    CDC& dc() override { return *surface; }
    std::vector<std::byte> finish() override
    {
        if (!surface->isOk()) return {};
        surface = std::make_unique<CQtDC>(CSize{pixelsAnInch, pixelsAnInch}); // the former one ends the document
        device.reset();
        const auto* const first = reinterpret_cast<const std::byte*>(buffer.data().constData());
        return {first, first + buffer.data().size()};
    }

private:
    QBuffer buffer;
    std::unique_ptr<QPaintDevice> device;
    std::unique_ptr<CQtDC> surface; ///< ends before the device
};

} // namespace

} // namespace vldv::paint

using namespace vldv;

extern "C" VLDV_INTERNAL_API IVectorPage* vldv_make_vector_page(const platform::vector_page_form& form)
{
    paint::start_windowless_toolkit();
    return new paint::vector_page(form);
}

static_assert(std::is_same_v<decltype(&vldv_make_vector_page), platform::make_vector_page>);

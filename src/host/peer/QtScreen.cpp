#include "host/peer/QtScreen.h"

#include "host/peer/QtPeer.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QImage>
#include <QMimeData>
#include <QScreen>
#include <QStyle>

namespace vldv::host {

namespace {

class qt_clipboard : public IClipboard {
public:
    bool open() override { return QApplication::clipboard() != nullptr; }
    void close() override {}
    void empty() override { QApplication::clipboard()->clear(); }
    std::optional<std::wstring> text() const override
    {
        const QMimeData* const data = QApplication::clipboard()->mimeData();
        return data && data->hasText() ? std::optional(data->text().toStdWString()) : std::nullopt;
    }
    bool setText(const std::wstring& text) override
    {
        QApplication::clipboard()->setText(QString::fromStdWString(text));
        return true;
    }
    bool setBitmap(const CBitmap& bitmap) override
    {
        // The rows stand bottom up, padded to whole 32-bit words. Turning them makes a copy, which the clipboard may
        // keep.
        const BITMAPINFOHEADER& header = bitmap.header;
        const int bytes = header.biBitCount / 8;
        const QImage rows(reinterpret_cast<const uchar*>(bitmap.bits), header.biWidth, header.biHeight,
                          (header.biWidth * bytes + 3) / 4 * 4,
                          bytes == 4 ? QImage::Format_RGB32 : QImage::Format_BGR888);
        QApplication::clipboard()->setImage(rows.mirrored());
        return true;
    }
};

class qt_screen : public IScreen {
public:
    std::vector<CRect> monitors() const override
    {
        std::vector<CRect> out;
        for (const QScreen* screen : QApplication::screens()) out.push_back(rect_of(screen->geometry()));
        return out;
    }
    CPoint pointer() const override { return {QCursor::pos().x(), QCursor::pos().y()}; }
    void setPointer(CPoint point) override { QCursor::setPos(point.x, point.y); }
    bool isKeyDown(unsigned key) const override
    {
        const Qt::KeyboardModifiers held = QApplication::keyboardModifiers();
        switch (key) {
        case VK_SHIFT:
            return held & Qt::ShiftModifier;
        case VK_CONTROL:
            return held & Qt::ControlModifier;
        case VK_MENU:
            return held & Qt::AltModifier;
        default:
            return false;
        }
    }
    int captionHeight() const override { return QApplication::style()->pixelMetric(QStyle::PM_TitleBarHeight); }
};

} // namespace

std::unique_ptr<IClipboard> make_clipboard() { return std::make_unique<qt_clipboard>(); }
std::unique_ptr<IScreen> make_screen() { return std::make_unique<qt_screen>(); }

} // namespace vldv::host

#include "host/peer/command_icon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

// Resources of a static library are entered by hand, outside of any namespace.
static void enter_resources() { Q_INIT_RESOURCE(workstation); }

namespace vldv::host {

namespace {

/// Draws lines in "currentColor", which the renderer knows nothing of.
class line_icon : public QIconEngine {
public:
    explicit line_icon(QByteArray lines_) : lines(std::move(lines_)) {}

    void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State) override
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        QByteArray colored = lines;
        colored.replace("currentColor",
                        QGuiApplication::palette().color(group, QPalette::ButtonText).name().toLatin1());
        if (mode == QIcon::Disabled) painter->setOpacity(disabledOpacity);
        QSvgRenderer(colored).render(painter, place);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap out(size);
        out.fill(Qt::transparent);
        QPainter painter(&out);
        paint(&painter, QRect({}, size), mode, state);
        return out;
    }
    QIconEngine* clone() const override { return new line_icon(lines); }

private:
    static constexpr double disabledOpacity = 0.7; // what has a colour of its own steps back too
    QByteArray lines;
};

} // namespace

QIcon command_icon(unsigned id)
{
    [[maybe_unused]] static const bool entered = (enter_resources(), true);
    QFile file(QStringLiteral(":/icons/%1").arg(id));
    return file.open(QFile::ReadOnly) ? QIcon(new line_icon(file.readAll())) : QIcon();
}

} // namespace vldv::host

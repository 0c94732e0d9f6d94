#include "host/window/StartPage.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace vldv::host {

namespace {

constexpr double headingSize = 1.6, columnHeadingSize = 1.15; // of the usual font
constexpr int columnWidth = 340;                              // pixels

QLabel* heading(const QString& text, double size)
{
    auto* const label = new QLabel(text);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * size);
    font.setBold(true);
    label->setFont(font);
    return label;
}

/// A line that is pressed by a click, the space bar or the Return key.
QPushButton* line_button(const CStartPage::entry& entry)
{
    auto* const button = new QPushButton;
    const QString shown = button->fontMetrics().elidedText(entry.title, Qt::ElideMiddle, columnWidth - 20);
    button->setText(QString(shown).replace('&', "&&"));
    button->setAccessibleName(entry.title);
    button->setToolTip(entry.hint);
    button->setStatusTip(entry.hint);
    button->setFlat(true);
    button->setAutoDefault(true);
    button->setCursor(Qt::PointingHandCursor);
    button->setStyleSheet(QStringLiteral("QPushButton { text-align: left; padding: 4px 8px; }"
                                         "QPushButton:hover, QPushButton:focus { text-decoration: underline; }"));
    // Opening removes the page.
    QObject::connect(button, &QPushButton::clicked, button, entry.open, Qt::QueuedConnection);
    return button;
}

QWidget* column_of(const QString& title, const std::vector<CStartPage::entry>& entries, const QString& none)
{
    auto* const column = new QWidget;
    column->setFixedWidth(columnWidth);
    auto* const lines = new QVBoxLayout(column);
    lines->setSpacing(2);
    lines->addWidget(heading(title, columnHeadingSize));
    if (entries.empty()) lines->addWidget(new QLabel(none));
    for (const CStartPage::entry& each : entries) lines->addWidget(line_button(each));
    lines->addStretch();
    return column;
}

} // namespace

CStartPage::CStartPage(QWidget* area) : QFrame(area)
{
    setObjectName(QStringLiteral("start"));
    setAutoFillBackground(true);
    setGeometry(area->rect());
    auto* const all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    area->installEventFilter(this);
}

void CStartPage::setEntries(std::vector<entry> recent, std::vector<entry> examples, std::function<void()> ask)
{
    if (content) {
        content->hide();
        content->deleteLater(); // one of its buttons may just have been pressed
    }
    auto* const page = new QWidget;
    auto* const rows = new QVBoxLayout(page);
    rows->setContentsMargins(40, 30, 40, 30);
    rows->addWidget(heading(QStringLiteral("Velmira"), headingSize));
    rows->addWidget(new QLabel(QStringLiteral("Open recordings, or drop files and folders here.")));
    auto* const open = new QPushButton(QStringLiteral("Open..."));
    open->setAutoDefault(true);
    open->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(open, &QPushButton::clicked, open, std::move(ask), Qt::QueuedConnection);
    rows->addWidget(open);
    rows->addSpacing(16);
    auto* const columns = new QHBoxLayout;
    columns->addWidget(column_of(QStringLiteral("Recent files"), recent, QStringLiteral("none yet")));
    columns->addWidget(column_of(QStringLiteral("Examples"), examples, {}));
    columns->addStretch();
    rows->addLayout(columns);
    rows->addStretch();
    auto* const scroll = new QScrollArea; // of a small window
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setWidget(page);
    layout()->addWidget(scroll);
    content = scroll;
    setFocusProxy(open);
}

bool CStartPage::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parent() && event->type() == QEvent::Resize) setGeometry(parentWidget()->rect());
    return false;
}

} // namespace vldv::host

#include "host/peer/qt_printing.h"

#include "paint/QtDC.h"

#include <QAction>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPrinterInfo>

namespace vldv::host {

namespace {

constexpr double millimetresPerThousandth = 0.0254; // of an inch

QMarginsF to_millimetres(const CRect& margins)
{
    return QMarginsF(margins.left, margins.top, margins.right, margins.bottom) * millimetresPerThousandth;
}

CRect to_thousandths(const QMarginsF& margins)
{
    const auto back = [](double millimetres) { return qRound(millimetres / millimetresPerThousandth); };
    return {back(margins.left()), back(margins.top()), back(margins.right()), back(margins.bottom())};
}

/// The Return key prints what a preview shows, as OK does elsewhere: the toolkit's dialog has no button for it. Its
/// fields take the key for themselves.
class return_prints : public QObject {
public:
    explicit return_prints(QPrintPreviewDialog& dialog) : QObject(&dialog) { dialog.installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress) return false;
        const int key = static_cast<QKeyEvent*>(event)->key();
        const auto& dialog = static_cast<QPrintPreviewDialog&>(*watched);
        if ((key != Qt::Key_Return && key != Qt::Key_Enter) || qobject_cast<QLineEdit*>(dialog.focusWidget()))
            return false;
        for (QAction* const action : dialog.findChildren<QAction*>())
            if (action->text() == QPrintPreviewDialog::tr("Print")) action->trigger();
        return true;
    }
};

} // namespace

printing::printing() = default;
printing::~printing() = default;

QPrinter& printing::chosen()
{
    if (!printer) printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    return *printer;
}

void printing::setUp(CRect& margins, QWidget* above)
{
    QPrinter& asked = chosen();
    asked.setFullPage(false);
    asked.setPageMargins(to_millimetres(margins), QPageLayout::Millimeter);
    QPageSetupDialog dialog(&asked, above);
    if (dialog.exec() != QDialog::Accepted) return;
    margins = to_thousandths(asked.pageLayout().margins(QPageLayout::Millimeter));
}

bool printing::print(const print_job& job, QWidget* above)
{
    QPrinter& asked = chosen();
    const bool hasTarget = !asked.outputFileName().isEmpty() || !QPrinterInfo::defaultPrinter().isNull();
    if (job.asks || !hasTarget) {
        QPrintDialog dialog(&asked, above);
        dialog.setOption(QAbstractPrintDialog::PrintPageRange, false); // pages are counted only while they are drawn
        if (dialog.exec() != QDialog::Accepted) return true;
    }
    return draw_job(asked, job);
}

void printing::preview(const print_job& job, QWidget* above)
{
    QPrintPreviewDialog dialog(&chosen(), above);
    new return_prints(dialog);
    if (auto* const sheets = dialog.findChild<QPrintPreviewWidget*>()) sheets->setFocus(); // not the field of the zoom
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, [&job](QPrinter* page) { draw_job(*page, job); });
    dialog.exec();
}

bool draw_job(QPrinter& printer, const print_job& job)
{
    printer.setDocName(QString::fromStdWString(job.title));
    // Coordinates begin at the edge of the paper: the views keep the margins by themselves, on every kind of page.
    printer.setFullPage(true);
    paint::CQtDC dc(printer);
    for (int page = 0; dc.isOk(); ++page) {
        const int saved = dc.SaveDC();
        const bool hasNext = job.paint(dc, page);
        dc.RestoreDC(saved);
        if (!hasNext) return dc.isOk();
        if (!printer.newPage()) return false;
    }
    return false;
}

} // namespace vldv::host

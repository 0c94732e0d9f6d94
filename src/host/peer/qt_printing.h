#pragma once
#include "platform/app/Host.h"

#include <memory>

class QPrinter;
class QWidget;

namespace vldv::host {

/// The printer that the user chose, for all views.
class printing {
public:
    printing();
    ~printing();

    void setUp(CRect& margins, QWidget* above);
    /// \return false when the printer refused the page
    bool print(const print_job& job, QWidget* above);
    void preview(const print_job& job, QWidget* above);

private:
    QPrinter& chosen();

    std::unique_ptr<QPrinter> printer; ///< made when it is asked for: the print system may be slow
};

/// Draws the job on whole sheets: margins are the job's own. \return false when the printer refused
bool draw_job(QPrinter& printer, const print_job& job);

} // namespace vldv::host

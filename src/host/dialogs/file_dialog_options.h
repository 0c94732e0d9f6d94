#pragma once
#include "platform/app/Host.h"

#include <QObject>
#include <cstddef>
#include <memory>

class QFileDialog;
class QStackedWidget;

namespace vldv::host {

/// Shows the variables of a prompt below the list of files.
void add_open_options(QFileDialog& dialog, const open_prompt& prompt);

/// The formats that a file can be written in: the name and what is shown below the list follow the one that is chosen.
class filter_choice : public QObject {
public:
    filter_choice(QFileDialog& dialog_, const save_prompt::choice& wanted_);
    std::size_t chosen() const;

private:
    void follow();

    QFileDialog& dialog;
    const save_prompt::choice& wanted;
    QStackedWidget* pages;
};
/// \return null where the prompt gives no choice; goes before the dialog
std::unique_ptr<filter_choice> add_filter_choice(QFileDialog& dialog, const save_prompt& prompt);

} // namespace vldv::host

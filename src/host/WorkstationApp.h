#pragma once
#include <QApplication>
#include <functional>
#include <string>

namespace vldv::host {

/// The toolkit's application. What a handler throws, say for want of memory, ends that handler alone: the user is told
/// and the open documents stay, so that they can be saved.
class CWorkstationApp : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override;

    /// Shows the user why something was broken off.
    std::function<void(const std::string&)> onFailure;

private:
    bool isTold = false;
};

} // namespace vldv::host

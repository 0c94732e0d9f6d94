#pragma once

namespace vldv {
class IProfile;
}

class QMainWindow;
class QWidget;

namespace vldv::host {

// Place and size of the main window, its docks, toolbars and status bar, kept in the profile's section "Workstation".

/// \return false when none are kept or they are of no use
bool restore_places(QMainWindow& window, const IProfile& profile);
void keep_places(const QMainWindow& window, IProfile& profile);

/// Makes a shown window that is larger than its screen fit, say one whose size was given for another scale.
void fit_to_screen(QWidget& window);

} // namespace vldv::host

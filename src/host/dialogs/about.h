#pragma once

class QWidget;
class QString;

namespace vldv::host {

/// What the program is: version, licence and the libraries it was built with. Rich text.
QString about_text();
void show_about(QWidget* over);

} // namespace vldv::host

#pragma once

class CWinApp;

namespace vldv::entry {

/// Enters the runtime classes of views, frames and documents.
void register_classes();
/// Gives the application all templates, the surface template, which opens files, first.
void add_templates(CWinApp& app);

} // namespace vldv::entry

#pragma once

namespace vldv {

/// Built-in layouts of the dialogs that edit a list of variables, as XML. They are strings 4998 and 4999.
extern const char* const saveFilesLayoutText;
extern const char* const optionsLayoutText;
extern const char* const settingsLayoutText; ///< 5000
extern const char* const recoveryLayoutText; ///< 5001

} // namespace vldv

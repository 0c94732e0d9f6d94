#pragma once
#include "vldv_api.h"

class CWinApp;

/// A number kept as text in the profile; `defaultValue` when there is none or it is no number.
VLDV_API double GetProfileDouble(CWinApp* app, const char* section, const char* entry, double defaultValue);
/// Keeps all digits. \return false when the profile could not be written
VLDV_API bool WriteProfileDouble(CWinApp* app, const char* section, const char* entry, double value);

#pragma once

class CWinApp;

/// A number kept as text in the profile; `defaultValue` when there is none or it is no number.
double GetProfileDouble(CWinApp* app, const char* section, const char* entry, double defaultValue);
/// Keeps all digits. \return false when the profile could not be written
bool WriteProfileDouble(CWinApp* app, const char* section, const char* entry, double value);

#include "platform/profile/profile_double.h"

#include "base/text.h"
#include "platform/app/WinApp.h"

using namespace vldv;

namespace {

constexpr int allDigits = 17;

} // namespace

double GetProfileDouble(CWinApp* app, const char* section, const char* entry, double defaultValue)
{
    const std::string text = app->profile().readString(section, entry).value_or("");
    return base::leading_number(text).value_or(defaultValue);
}

bool WriteProfileDouble(CWinApp* app, const char* section, const char* entry, double value)
{
    return app->profile().writeString(section, entry, base::general(value, allDigits));
}

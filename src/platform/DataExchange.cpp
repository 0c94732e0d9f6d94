#include "platform/DataExchange.h"

#include "base/text.h"

#include <cmath>

namespace {

constexpr std::size_t longestNumber = 256;
constexpr double plainDecades = 7.0;

} // namespace

void DDX_DoublePrecText(CDataExchange* exchange, int id, double& value, int precision)
{
    if (exchange->m_bSaveAndValidate) {
        const std::string text = base::narrow(exchange->GetControlText(id).substr(0, longestNumber));
        value = base::leading_number(text).value_or(value);
        return;
    }
    // The logarithm of 0 is infinite and that of a negative number is none: both fail the comparison.
    const bool isPlain = std::fabs(std::log10(value)) <= plainDecades;
    const std::string text = base::formatted(isPlain ? "%.*f" : "%.*g", precision, value);
    exchange->SetControlText(id, base::widen(text));
}

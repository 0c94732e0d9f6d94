#include "document/MinMaxInfo.h"

#include "primitives/map/range.h"

#include <algorithm>
#include <limits>

using namespace vldv;

void CMinMaxInfo::Clear() noexcept
{
    range = 1;
    maximum = -32768;
    minimum = 32767;
}

void CMinMaxInfo::Adjust(const short* data, unsigned count) noexcept
{
    if (count == 0) return;
    const primitives::height_range block = primitives::find_range({data, count});
    minimum = std::min<int>(minimum, block.minimum);
    maximum = std::max<int>(maximum, block.maximum);
    range = maximum == minimum ? 1 : maximum - minimum;
}

void CMinMaxInfo::Readjust(const short* data, unsigned count) noexcept
{
    if (count == 0) return;
    Clear();
    Adjust(data, count);
}

void CMinMaxDoubleInfo::Clear() noexcept
{
    range = 1.0;
    maximum = std::numeric_limits<double>::lowest();
    minimum = std::numeric_limits<double>::max();
}

void CMinMaxDoubleInfo::Adjust(const double* data, unsigned count) noexcept
{
    if (count == 0) return;
    for (unsigned i = 0; i < count; ++i) { // a NaN is neither below nor above anything and changes no limit
        if (data[i] < minimum) minimum = data[i];
        if (data[i] > maximum) maximum = data[i];
    }
    range = maximum > minimum ? maximum - minimum : 1.0;
}

void CMinMaxDoubleInfo::Readjust_d(const double* data, unsigned count) noexcept
{
    if (count == 0) return;
    Clear();
    Adjust(data, count);
}

void CMinMaxDoubleInfo::Readjust_s(const short* data, unsigned count) noexcept
{
    if (count == 0) return;
    const primitives::height_range block = primitives::find_range({data, count});
    minimum = block.minimum;
    maximum = block.maximum;
    range = maximum == minimum ? 1.0 : maximum - minimum;
}

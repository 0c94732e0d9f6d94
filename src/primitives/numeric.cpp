#include "primitives/numeric.h"

#include "primitives/fit/line_fit.h"

using namespace vldv;

void planefit_line_32f(float* row, int width) noexcept
{
    if (width <= 0) return;
    double sum = 0.0, moment = 0.0;
    for (int i = 0; i < width; ++i) {
        sum += static_cast<double>(row[i]);
        moment += static_cast<double>(row[i]) * i;
    }
    const primitives::fitted_line line = primitives::fit_line(sum, moment, width);
    for (int i = 0; i < width; ++i)
        row[i] = static_cast<float>(static_cast<double>(row[i]) - (line.offset + line.slope * i));
}

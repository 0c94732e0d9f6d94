#pragma once
#include "vldv_api.h"

/// The plane A + B * column + C * row; of a curve, which has one row, the line A + B * index.
struct linear_fit {
    double A = 0.0, B = 0.0, C = 0.0;
};

/// The least-squares plane through rows of numbers. A direction with one number only has no slope. Without numbers all
/// is 0. A plane of whole numbers and a constant come out exactly.
/// \param out  may be null
VLDV_API void fit_plane(const double* data, int rows, int columns, linear_fit* out) noexcept;
/// Fits the plane and subtracts it. \param out  the plane; may be null
VLDV_API void remove_plane(double* data, int rows, int columns, linear_fit* out) noexcept;
/// Fits and subtracts the plane of floats: fitted in double precision, subtracted in single.
VLDV_API void remove_plane_32f(float* data, int rows, int columns, linear_fit* out) noexcept;
/// out[k] is the mean of x^(k + 1), k = 0 … order - 1; 0 without numbers.
VLDV_API void moments(double* out, int order, const double* data, int columns, int rows) noexcept;

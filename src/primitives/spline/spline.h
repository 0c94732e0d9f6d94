#pragma once
#include "vldv_api.h"

// Cubic splines through points: twice continuously differentiable, without curvature at the ends. Positions rise
// strictly; n is the number of points. With one point the spline is constant, with two a line.

/// Second derivatives at the points, which the other functions take. \throws std::bad_alloc
VLDV_API void build_spline(const double* x, const double* y, int n, double* second);
/// The segment around a position: the largest i with x[i] <= at, brought into 0 … n - 2; 0 for fewer than 2 points.
VLDV_API int find_spline_point(const double* x, int n, double at) noexcept;
/// Factors of y[i], y[i + 1], second[i] and second[i + 1] in the value at a position of segment i. Beyond the ends the
/// cubic of the segment goes on.
VLDV_API void eval_spline_factors(const double* x, int segment, double at, double factors[4]) noexcept;
/// The value at a position; 0 without points.
VLDV_API double eval_spline_point(const double* x, const double* y, const double* second, int n, double at) noexcept;

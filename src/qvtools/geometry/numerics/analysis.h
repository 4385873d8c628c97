#pragma once

/// Numerical analysis in one variable and linear systems: Gauss-Jordan elimination, integration, extrapolation, root
/// finding and table interpolation.
///
/// Failures are reported through `tell_error` with the code and message given here; the routine then stops when the
/// abandon code `QV_ERROR_CODE` is set. Arithmetic is done in double and stored in the type of the arrays, which belong
/// to the caller.

#include "qvtools/api.h"

/// Solves linear systems by Gauss-Jordan elimination with full pivoting. a (n x n, row by row) is replaced by its
/// inverse, b (n x m, row by row) by the solutions. Nothing is done when `QV_ERROR_CODE` is set.
/// Errors: 301 "Out of memery in gaussj" for each of three scratch arrays; 30 "Singular matrix -1 in gaussj" (at most
/// once per pivot) when no pivot is left, which happens with NaN in the matrix; 30 "Singular matrix -2 in gaussj" for a
/// zero pivot. Code 30 does not set the abandon code: elimination goes on, and the results are infinite or NaN. Quirk:
/// the pivot candidate in row j, column k is compared by the element of row k, column j; hosts rely on the order of
/// elimination that this gives. For a symmetric matrix it makes no difference.
QV_API void gaussj(float* a, int n, float* b, int m);
QV_API void gaussj(double* a, int n, double* b, int m);

/// The integral of f from a to b by Romberg's method: at most 20 stages, relative accuracy 1e-4. Results below 1e-4 are
/// taken as they are. Error 0 when 20 stages do not suffice; the last value is returned. f must not integrate, see
/// `trapzd`.
QV_API float integeration_romberg(float (*f)(float), float a, float b);

/// The n-th stage of the extended trapezoid rule for f from a to b; n = 1, 2, 3, ... must be called in order. The
/// partial sum is the thread's: two integrations of one thread must not interleave. The stage n takes 2^(n-2) new
/// points; n above 32 counts as 32.
QV_API float trapzd(float (*f)(float), float a, float b, int n);

/// The value at x of the polynomial through n points (Neville's algorithm), and the estimate dy of its error. Nothing
/// is written when `QV_ERROR_CODE` is set or n < 1.
/// Errors: 301 "Out of memery in polint"; 301 "Error in polint" for two equal abscissae.
QV_API void polint(const float* xa, const float* ya, int n, float x, float* y, float* dy);

/// A root of f between a and b by bisection to 1e-4, the middle of the last interval; at most 1000 halvings. Error 30
/// "No result in Two_divide_equ !" when f has one sign at both ends; the value then has no meaning.
QV_API float two_divide_equ(float (*f)(float), float a, float b);

/// Linear interpolation at x in a table of n entries with ascending xs; beyond its ends the first or last two entries
/// are extrapolated. One entry gives its value, none 0. Error 202 (a message box) when the two abscissae are less than
/// 1e-20 apart; 1e-20 is then the divisor.
QV_API float liner_inter(const float* xs, const float* ys, int n, float x);

/// Linear interpolation in a table with jumps, which are two entries at one abscissa. 0 for x below xs[0] or above
/// xs[n-1]. Where entries lie within 1e-5 of x, the left form returns the first of them, the right form the last.
QV_API float liner_inter_2_left(int n, const float* xs, const float* ys, float x);
QV_API float liner_inter_2_right(int n, const float* xs, const float* ys, float x);

/// The sum of two piecewise-linear functions, given as tables with ascending abscissae; outside its table a function
/// is 0. Writes an entry for every abscissa of either table, once when they agree within 1e-5, and returns the number
/// of entries: at most n1 + n2, and 0 when memory runs out (301 "Out of memery in add_seg_ment_function"). The result
/// may be written over the input tables where they are long enough.
QV_API int add_segment_function(int n1, const float* xs1, const float* ys1, int n2, const float* xs2, const float* ys2,
                                float* xs, float* ys);
/// The same for tables with jumps: where the sum jumps, the ends of the tables included, it gets two entries, the
/// values from the left and from the right. At most 2 (n1 + n2) entries.
QV_API int add_segment_function_2(int n1, const float* xs1, const float* ys1, int n2, const float* xs2,
                                  const float* ys2, float* xs, float* ys);

#pragma once

/// Small matrices and vectors in space, as float arrays of the caller. Matrices are stored row by row. Outputs must not
/// overlap inputs. A direction-cosine matrix ("lamda") has nine elements; its rows are the unit vectors of the local
/// axes x, y, z in global coordinates.

#include "qvtools/api.h"

/// c (n x l) = a (n x m) . b (m x l). The _1 form is for doubles.
QV_API void mut_matrix(const float* a, const float* b, float* c, int n, int m, int l);
QV_API void mut_matrix_1(const double* a, const double* b, double* c, int n, int m, int l);
/// c (n x n) = left (n x m) . a (m x m) . right (m x n), as in the change of a matrix to other axes. The _1 form is for
/// doubles.
QV_API void mut_matrix_lr(const float* left, const float* a, const float* right, float* c, int n, int m);
QV_API void mut_matrix_lr_1(const double* left, const double* a, const double* right, double* c, int n, int m);
/// t (m x n) becomes the transpose of a (n x m).
QV_API void matrix_transfer(const float* a, float* t, int n, int m);

/// Vectors of three components. Cosine and sine are those of the angle between, 0 to pi; with a vector of no length the
/// cosine is 1 and the sine 0.
QV_API float vector_dot_vector(const float* a, const float* b);
QV_API float vector_len(const float* a);
QV_API void vector_cross_vector(const float* a, const float* b, float* c);
QV_API float vector_cos(const float* a, const float* b);
QV_API float vector_sin(const float* a, const float* b);

/// Local axes of a plane through two vectors: x along the first, z along first x second, y = z x x. A vector of no
/// length, or two on one line, leave the axes as `form_zhigan_lamda` has them.
QV_API void form_vecter_lamda(const float* first, const float* second, float* lamda);
/// Local axes of a straight member from point 1 to point 2: x along it, y level (Z x x), z upward; for an upright
/// member y is the global Y. Equal points give the global axes.
QV_API void form_zhigan_lamda(float x1, float y1, float z1, float x2, float y2, float z2, float* lamda);
/// Local axes after turns, in radians, by a about Z, then by b about the new y, then by c about the new x.
QV_API void form_euler_lamda(float a, float b, float c, float* lamda);
/// The turns of `form_euler_lamda`: a and c in (-pi, pi], b in [-pi/2, pi/2]. When x stands upright, c is 0.
QV_API void get_euler_angle(const float* lamda, float* a, float* b, float* c);
/// Local to global components of a vector: global = transposed lamda . local.
QV_API void xyz_to_XYZ(const float* lamda, const float* local, float* global);

#include "qvtools/geometry/numerics/vectors.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using Vector = std::array<double, 3>;

Vector cross(const Vector& a, const Vector& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
double dot(const Vector& a, const Vector& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
double length(const Vector& a) {
  return std::sqrt(dot(a, a));
}
Vector vector_of(const float* v) {
  return {v[0], v[1], v[2]};
}

Vector unit(const Vector& a) {
  const double l = length(a);
  return {a[0] / l, a[1] / l, a[2] / l};
}

void store_rows(const Vector& x, const Vector& y, const Vector& z, float* lamda) {
  for (const Vector* row : {&x, &y, &z}) {
    lamda = std::transform(row->begin(), row->end(), lamda, [](double v) { return static_cast<float>(v); });
  }
}

/// Element (i, j) of a product, of sums in double.
template <class T>
double row_by_column(const T* a, const T* b, int i, int j, int m, int l) {
  double sum = 0;
  for (int k = 0; k < m; ++k) sum += static_cast<double>(a[i * m + k]) * b[k * l + j];
  return sum;
}

template <class T>
void multiply(const T* a, const T* b, T* c, int n, int m, int l) {
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < l; ++j) c[i * l + j] = static_cast<T>(row_by_column(a, b, i, j, m, l));
  }
}

template <class T>
void multiply_both_sides(const T* left, const T* a, const T* right, T* c, int n, int m) {
  // A block of a row's columns at a time: no intermediate matrix, and one row of left . a for each block.
  constexpr int kBlock = 64;
  for (int i = 0; i < n; ++i) {
    for (int first = 0; first < n; first += kBlock) {
      const int count = (std::min)(kBlock, n - first);
      std::array<double, kBlock> sums{};
      for (int k = 0; k < m; ++k) {
        const double element = row_by_column(left, a, i, k, m, m);
        for (int j = 0; j < count; ++j) sums[static_cast<std::size_t>(j)] += element * right[k * n + first + j];
      }
      std::transform(sums.begin(), sums.begin() + count, c + i * n + first, [](double v) { return static_cast<T>(v); });
    }
  }
}

}  // namespace

void mut_matrix(const float* a, const float* b, float* c, int n, int m, int l) {
  multiply(a, b, c, n, m, l);
}
void mut_matrix_1(const double* a, const double* b, double* c, int n, int m, int l) {
  multiply(a, b, c, n, m, l);
}

void mut_matrix_lr(const float* left, const float* a, const float* right, float* c, int n, int m) {
  multiply_both_sides(left, a, right, c, n, m);
}
void mut_matrix_lr_1(const double* left, const double* a, const double* right, double* c, int n, int m) {
  multiply_both_sides(left, a, right, c, n, m);
}

void matrix_transfer(const float* a, float* t, int n, int m) {
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < m; ++j) t[j * n + i] = a[i * m + j];
  }
}

float vector_dot_vector(const float* a, const float* b) {
  return static_cast<float>(dot(vector_of(a), vector_of(b)));
}

float vector_len(const float* a) {
  return static_cast<float>(length(vector_of(a)));
}

void vector_cross_vector(const float* a, const float* b, float* c) {
  const Vector product = cross(vector_of(a), vector_of(b));
  std::transform(product.begin(), product.end(), c, [](double v) { return static_cast<float>(v); });
}

float vector_cos(const float* a, const float* b) {
  const Vector u = vector_of(a), v = vector_of(b);
  const double lengths = length(u) * length(v);
  return lengths == 0 ? 1 : static_cast<float>(std::clamp(dot(u, v) / lengths, -1.0, 1.0));
}

float vector_sin(const float* a, const float* b) {
  const Vector u = vector_of(a), v = vector_of(b);
  const double lengths = length(u) * length(v);
  return lengths == 0 ? 0 : static_cast<float>((std::min)(length(cross(u, v)) / lengths, 1.0));
}

void form_vecter_lamda(const float* first, const float* second, float* lamda) {
  const Vector along = vector_of(first), normal = cross(along, vector_of(second));
  if (length(normal) == 0) return form_zhigan_lamda(0, 0, 0, first[0], first[1], first[2], lamda);
  const Vector x = unit(along), z = unit(normal);
  store_rows(x, cross(z, x), z, lamda);
}

void form_zhigan_lamda(float x1, float y1, float z1, float x2, float y2, float z2, float* lamda) {
  const Vector along{static_cast<double>(x2) - x1, static_cast<double>(y2) - y1, static_cast<double>(z2) - z1};
  const bool upright = along[0] == 0 && along[1] == 0;
  const Vector x = length(along) == 0 ? Vector{1, 0, 0} : unit(along);
  const Vector y = upright ? Vector{0, 1, 0} : unit(cross({0, 0, 1}, x));
  store_rows(x, y, cross(x, y), lamda);
}

void form_euler_lamda(float a, float b, float c, float* lamda) {
  const double ca = std::cos(1.0 * a), sa = std::sin(1.0 * a), cb = std::cos(1.0 * b), sb = std::sin(1.0 * b);
  const double cc = std::cos(1.0 * c), sc = std::sin(1.0 * c);
  store_rows({ca * cb, sa * cb, -sb}, {ca * sb * sc - sa * cc, sa * sb * sc + ca * cc, cb * sc},
             {ca * sb * cc + sa * sc, sa * sb * cc - ca * sc, cb * cc}, lamda);
}

void get_euler_angle(const float* lamda, float* a, float* b, float* c) {
  const double level = std::hypot(lamda[0], lamda[1]);
  const bool upright = level < 1e-6;
  *b = static_cast<float>(std::atan2(-1.0 * lamda[2], level));
  *a = static_cast<float>(upright ? std::atan2(-1.0 * lamda[3], 1.0 * lamda[4]) : std::atan2(lamda[1], lamda[0]));
  *c = static_cast<float>(upright ? 0 : std::atan2(lamda[5], lamda[8]));
}

void xyz_to_XYZ(const float* lamda, const float* local, float* global) {
  multiply(local, lamda, global, 1, 3, 3);
}

#include <cmath>
#include <memory>
#include <new>
#include <utility>

#include "qvtools/geometry/numerics/analysis.h"
#include "qvtools/services/messages.h"

namespace {

constexpr int kSingular = 30;

template <class T>
class Elimination {
 public:
  Elimination(T* a, int n, T* b, int m)
      : a_(a),
        b_(b),
        n_(n > 0 ? static_cast<std::size_t>(n) : 0),
        m_(m > 0 ? static_cast<std::size_t>(m) : 0),
        pivot_rows_(scratch()),
        pivot_columns_(scratch()),
        pivot_counts_(scratch()) {}

  void run() {
    if (QV_ERROR_CODE != 0 || !pivot_rows_ || !pivot_columns_ || !pivot_counts_) return;
    for (std::size_t pass = 0; pass < n_; ++pass) {
      if (!find_pivot()) return;
      ++pivot_counts_[column_];
      if (row_ != column_) swap_rows();
      pivot_rows_[pass] = static_cast<int>(row_);
      pivot_columns_[pass] = static_cast<int>(column_);
      if (!clear_column()) return;
    }
    restore_columns();
  }

 private:
  std::unique_ptr<int[]> scratch() const {
    std::unique_ptr<int[]> items(new (std::nothrow) int[n_ + 1]());
    if (!items) tell_error(301, "Out of memery in gaussj");
    return items;
  }

  T* row(std::size_t i) { return a_ + i * n_; }
  T* solutions(std::size_t i) { return b_ + i * m_; }

  /// False when the elimination has to stop. When no candidate is accepted, which happens only with NaN in the matrix,
  /// the pivot of the pass before is used again.
  bool find_pivot() {
    double largest = 0;
    bool exhausted = false;
    for (std::size_t j = 0; j < n_; ++j) {
      if (pivot_counts_[j] == 1) continue;
      for (std::size_t k = 0; k < n_; ++k) {
        if (pivot_counts_[k] == 0) {
          // Quirk: row and column exchanged; see the header.
          if (largest <= std::fabs(static_cast<double>(row(k)[j]))) {
            largest = std::fabs(static_cast<double>(row(j)[k]));
            row_ = j;
            column_ = k;
          }
        } else if (pivot_counts_[k] > 1 && !exhausted) {
          exhausted = true;
          tell_error(kSingular, "Singular matrix -1 in gaussj");
          if (QV_ERROR_CODE != 0) return false;
        }
      }
    }
    return true;
  }

  void swap_rows() {
    std::swap_ranges(row(row_), row(row_) + n_, row(column_));
    std::swap_ranges(solutions(row_), solutions(row_) + m_, solutions(column_));
  }

  bool clear_column() {
    T* const pivot_row = row(column_);
    if (pivot_row[column_] == 0) {
      tell_error(kSingular, "Singular matrix -2 in gaussj");
      if (QV_ERROR_CODE != 0) return false;
    }
    const double inverse = 1.0 / static_cast<double>(pivot_row[column_]);
    pivot_row[column_] = 1;
    scale(pivot_row, n_, inverse);
    scale(solutions(column_), m_, inverse);
    for (std::size_t i = 0; i < n_; ++i) {
      if (i == column_) continue;
      const auto factor = static_cast<double>(row(i)[column_]);
      row(i)[column_] = 0;
      subtract(row(i), pivot_row, n_, factor);
      subtract(solutions(i), solutions(column_), m_, factor);
    }
    return true;
  }

  static void scale(T* v, std::size_t n, double factor) {
    for (std::size_t i = 0; i < n; ++i) v[i] = static_cast<T>(v[i] * factor);
  }
  static void subtract(T* v, const T* w, std::size_t n, double factor) {
    for (std::size_t i = 0; i < n; ++i) v[i] = static_cast<T>(v[i] - w[i] * factor);
  }

  void restore_columns() {
    for (std::size_t pass = n_; pass-- > 0;) {
      const auto p = static_cast<std::size_t>(pivot_rows_[pass]), q = static_cast<std::size_t>(pivot_columns_[pass]);
      if (p == q) continue;
      for (std::size_t i = 0; i < n_; ++i) std::swap(row(i)[p], row(i)[q]);
    }
  }

  T* a_;
  T* b_;
  std::size_t n_;
  std::size_t m_;
  std::unique_ptr<int[]> pivot_rows_;
  std::unique_ptr<int[]> pivot_columns_;
  std::unique_ptr<int[]> pivot_counts_;
  std::size_t row_ = 0;
  std::size_t column_ = 0;
};

}  // namespace

void gaussj(float* a, int n, float* b, int m) {
  Elimination<float>(a, n, b, m).run();
}
void gaussj(double* a, int n, double* b, int m) {
  Elimination<double>(a, n, b, m).run();
}

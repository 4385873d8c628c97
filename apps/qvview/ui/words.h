#pragma once

#include <QtCore/QString>
#include <functional>
#include <utility>
#include <vector>

#include "model/captions.h"

namespace qvview {

/// The captions in the present language, and who is to be told when it changes.
class Words {
 public:
  explicit Words(Language language) : language_(language) {}
  Language language() const { return language_; }

  QString operator()(Text text) const { return QString::fromUtf8(caption(text, language_)); }
  QString operator()(Text text, const QString& first) const { return (*this)(text).arg(first); }
  QString operator()(Text text, const QString& first, const QString& second) const {
    return (*this)(text).arg(first, second);
  }

  /// Hands the caption to `set` now and whenever the language changes; what it sets must live as long.
  void bind(Text text, std::function<void(const QString&)> set) {
    set((*this)(text));
    bound_.emplace_back(text, std::move(set));
  }
  void change(Language language) {
    language_ = language;
    for (const auto& [text, set] : bound_) set((*this)(text));
  }

 private:
  Language language_;
  std::vector<std::pair<Text, std::function<void(const QString&)>>> bound_;
};

}  // namespace qvview

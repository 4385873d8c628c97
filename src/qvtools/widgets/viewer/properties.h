#pragma once

/// What is told of entities that were picked. Nothing here needs a screen.

#include <string>
#include <vector>

#include "qvtools/widgets/viewer/captions.h"
#include "qvtools/widgets/viewer/drawing.h"

namespace qv::viewer {

/// A property and its value.
struct Property {
  Text name;          ///< its caption
  std::string value;  ///< UTF-8
};

/// All that is known of one entity: its kind, look, points, sizes, length and area, the contents of its block.
std::vector<Property> properties_of(const Drawing& drawing, int entity, Language language);

/// How many entities are of a kind on a layer.
struct CountOfKind {
  ACAD_Entity_Type kind;  ///< of the entities
  std::string layer;      ///< GBK
  int count;              ///< how many
};

/// How many of the entities are of each kind on each layer, the most first.
std::vector<CountOfKind> counts_of(const Drawing& drawing, const std::vector<int>& entities);

}  // namespace qv::viewer

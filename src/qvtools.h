#pragma once

/// The whole public interface.

#include "cadformats/shx.h"
#include "data/services.h"
#include "drawing/base_sgt.h"
#include "dxf/document.h"
#include "geometry/coor.h"
#include "geometry/numeric.h"
#include "geometry/point.h"
#include "geometry/rect.h"
#include "geometry/region.h"
#include "geometry/shape.h"
#include "platform/bitmap/bitmap_dc.h"
#include "platform/console/console_host.h"
#include "platform/device.h"
#include "platform/framework.h"
#include "platform/host.h"
#include "platform/numbers.h"
#include "platform/text.h"
#include "platform/textfile.h"
#include "ui/safe_dc.h"

#include "qvtools/plot/internal/canvas.h"

#include "qvtools/geometry/values/coor.h"

CFCoor G_ConCoor;
CFCoor G_ConCoor_bak;

float G_fLeft = 0;
float G_fTop = 0;
float G_fRight = 0;
float G_fBottom = 0;

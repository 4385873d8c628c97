// Frames and blocks of sheets.

#include "figure.h"

using manual::Side;

FIGURE(sheet_frame) {
  //[
  sgt.SetBiLiChi(1);
  sgt.Draw_TuKuang(0, 0, 2, 0, 0);
  sgt.Draw_TuKuang(650, 0, 3, 0, 1);
  //]
  figure.zoom(0.16F);
  figure.point(0, 0, "x, y", Side::Below);
  figure.note(300, 210, "size = 2, portrait = 0", Side::Above);
  figure.length(0, 420, 594, 420, "594 + extra", 4);
  figure.length(594, 420, 594, 0, "420", 4);
  figure.point(650, 0, "x, y", Side::Below);
  figure.note(800, 240, "size = 3", Side::Above);
  figure.note(800, 210, "portrait = 1", Side::Above);
}

FIGURE(title_block) {
  //[
  sgt.SetBiLiChi(1);
  sgt.Draw_BiaoTiLan(0, 0, 0.7F);
  //]
  figure.zoom(0.7F);
  figure.point(0, 0, "x, y", Side::BelowRight);
  figure.length(-180, 40, 0, 40, "180", 4);
  figure.length(0, 40, 0, 0, "40", 4);
  figure.leader(-60, 0, -4, -4, "width");
}

FIGURE(countersign_block) {
  //[
  sgt.SetBiLiChi(1);
  sgt.Draw_HuiQianLan(0, 0, 0);
  sgt.Draw_HuiQianLan(40, 0, 90);
  //]
  figure.zoom(0.7F);
  figure.point(0, 0, "x, y", Side::Below);
  figure.length(-75, 20, 0, 20, "75", 4);
  figure.length(-75, 0, -75, 20, "20", 4);
  figure.point(40, 0, "x, y", Side::Below);
  figure.angle(40, 0, 8, 180, 90, "angle = 90");
}

FIGURE(drawing_title) {
  //[
  sgt.Draw_TuMing(0, 0, qv::to_gbk("KL-1 配筋图").c_str(), 1, 1);
  sgt.Draw_TuMing(5000, 0, "1-1", 1, 0);
  //]
  figure.point(0, 0, "");
  figure.leader(0, 0, -5, -6, "x, y");
  figure.leader(950, -30, 6, -5, "thickLine, thinLine");
  figure.point(5000, 0, "");
  figure.leader(5000, 0, -5, -6, "x, y");
  figure.leader(5250, 0, 5, -5, "thinLine = 0");
}

#pragma once

/// The Chinese texts of the sample sheets, as GBK bytes with the readable text beside each.

namespace qvdraw::captions {

inline constexpr char kProject[] =  // 滨江办公楼
    "\xB1\xF5\xBD\xAD\xB0\xEC\xB9\xAB\xC2\xA5";
inline constexpr char kPlanName[] =  // 二层结构平面
    "\xB6\xFE\xB2\xE3\xBD\xE1\xB9\xB9\xC6\xBD\xC3\xE6";
inline constexpr char kBeamName[] =  // KL-1 配筋图
    "KL-1 \xC5\xE4\xBD\xEE\xCD\xBC";
inline constexpr char kCalculationName[] =  // KL-1 内力计算
    "KL-1 \xC4\xDA\xC1\xA6\xBC\xC6\xCB\xE3";
inline constexpr char kDesigner[] =  // 王工
    "\xCD\xF5\xB9\xA4";
inline constexpr char kChecker[] =  // 李工
    "\xC0\xEE\xB9\xA4";
inline constexpr char kReviewer[] =  // 陈工
    "\xB3\xC2\xB9\xA4";
inline constexpr char kApprover[] =  // 赵工
    "\xD5\xD4\xB9\xA4";
inline constexpr char kPlanNumber[] =  // 结施-03
    "\xBD\xE1\xCA\xA9-03";
inline constexpr char kBeamNumber[] =  // 结施-12
    "\xBD\xE1\xCA\xA9-12";
inline constexpr char kCalculationNumber[] =  // 结计-12
    "\xBD\xE1\xBC\xC6-12";
inline constexpr char kPlanTitle[] =  // 二层结构平面图 1:100
    "\xB6\xFE\xB2\xE3\xBD\xE1\xB9\xB9\xC6\xBD\xC3\xE6\xCD\xBC 1:100";
inline constexpr char kStairs[] =  // 楼梯间
    "\xC2\xA5\xCC\xDD\xBC\xE4";
inline constexpr char kNotes[] =  // 说明:
    "\xCB\xB5\xC3\xF7:";
inline constexpr char kNoteConcrete[] =  // 1. 梁、板、柱混凝土强度等级 C30。
    "1. \xC1\xBA\xA1\xA2\xB0\xE5\xA1\xA2\xD6\xF9\xBB\xEC\xC4\xFD\xCD\xC1\xC7\xBF\xB6\xC8\xB5\xC8\xBC\xB6 C30\xA1\xA3";
inline constexpr char kNoteSlab[] =  // 2. 未注明板厚 120, 未注明次梁居中布置。
    "2. \xCE\xB4\xD7\xA2\xC3\xF7\xB0\xE5\xBA\xF1 120, "
    "\xCE\xB4\xD7\xA2\xC3\xF7\xB4\xCE\xC1\xBA\xBE\xD3\xD6\xD0\xB2\xBC\xD6\xC3\xA1\xA3";
inline constexpr char kNoteLevel[] =  // 3. 未注明梁顶标高 4.170 m。
    "3. \xCE\xB4\xD7\xA2\xC3\xF7\xC1\xBA\xB6\xA5\xB1\xEA\xB8\xDF 4.170 m\xA1\xA3";
inline constexpr char kNoteSteel[] =  // 4. 钢筋保护层厚度: 梁 25, 板 15。
    "4. \xB8\xD6\xBD\xEE\xB1\xA3\xBB\xA4\xB2\xE3\xBA\xF1\xB6\xC8: \xC1\xBA 25, \xB0\xE5 15\xA1\xA3";
inline constexpr char kSchedule[] =  // 框架梁表
    "\xBF\xF2\xBC\xDC\xC1\xBA\xB1\xED";
inline constexpr char kMark[] =  // 编号
    "\xB1\xE0\xBA\xC5";
inline constexpr char kSize[] =  // 截面
    "\xBD\xD8\xC3\xE6";
inline constexpr char kTopBars[] =  // 上部
    "\xC9\xCF\xB2\xBF";
inline constexpr char kBottomBars[] =  // 下部
    "\xCF\xC2\xB2\xBF";
inline constexpr char kStirrups[] =  // 箍筋
    "\xB9\xBF\xBD\xEE";
inline constexpr char kBeamTitle[] =  // KL-1(2) 配筋图 1:50
    "KL-1(2) \xC5\xE4\xBD\xEE\xCD\xBC 1:50";
inline constexpr char kHookTitle[] =  // 弯钩大样
    "\xCD\xE4\xB9\xB3\xB4\xF3\xD1\xF9";
inline constexpr char kMomentTitle[] =  // 弯矩图 M (kN·m)
    "\xCD\xE4\xBE\xD8\xCD\xBC M (kN\xA1\xA4m)";
inline constexpr char kShearTitle[] =  // 剪力图 V (kN)
    "\xBC\xF4\xC1\xA6\xCD\xBC V (kN)";
inline constexpr char kSteelTitle[] =  // 受弯钢筋面积 As (mm2)
    "\xCA\xDC\xCD\xE4\xB8\xD6\xBD\xEE\xC3\xE6\xBB\xFD As (mm2)";
inline constexpr char kAlongBeam[] =  // 距左支座 x (m)
    "\xBE\xE0\xD7\xF3\xD6\xA7\xD7\xF9 x (m)";
inline constexpr char kMoment[] =  // 弯矩 M (kN·m)
    "\xCD\xE4\xBE\xD8 M (kN\xA1\xA4m)";
inline constexpr char kShear[] =  // 剪力 V (kN)
    "\xBC\xF4\xC1\xA6 V (kN)";
inline constexpr char kSteelArea[] =  // As (mm2)
    "As (mm2)";
inline constexpr char kCalculation[] =  // KL-1 计算书
    "KL-1 \xBC\xC6\xCB\xE3\xCA\xE9";
inline constexpr char kGivenBeam[] =  // 1. 两跨连续梁, 跨度 L=6.6 m, 截面 300x700
    "1. \xC1\xBD\xBF\xE7\xC1\xAC\xD0\xF8\xC1\xBA, \xBF\xE7\xB6\xC8 L=6.6 m, \xBD\xD8\xC3\xE6 300x700";
inline constexpr char kGivenMaterial[] =  // 2. C30 混凝土, fc=14.3 MPa; 三级钢, fy=360 MPa
    "2. C30 \xBB\xEC\xC4\xFD\xCD\xC1, fc=14.3 MPa; \xC8\xFD\xBC\xB6\xB8\xD6, fy=360 MPa";
inline constexpr char kGivenLoad[] =  // 3. 恒载 g=24 kN/m, 活载 q=12 kN/m
    "3. \xBA\xE3\xD4\xD8 g=24 kN/m, \xBB\xEE\xD4\xD8 q=12 kN/m";
inline constexpr char kLegendFull[] =  // 实线: 两跨满载
    "\xCA\xB5\xCF\xDF: \xC1\xBD\xBF\xE7\xC2\xFA\xD4\xD8";
inline constexpr char kLegendHalf[] =  // 虚线: 活载仅在左跨
    "\xD0\xE9\xCF\xDF: \xBB\xEE\xD4\xD8\xBD\xF6\xD4\xDA\xD7\xF3\xBF\xE7";

}  // namespace qvdraw::captions

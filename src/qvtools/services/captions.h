#pragma once

/// The library's Chinese texts, as GBK bytes with the readable text beside each, so that no compiler's character set
/// matters. A test compares the bytes with the comments.

namespace qv::captions {

inline constexpr char kCannotOpenFile[] =  // 打不开文件: %s
    "\xB4\xF2\xB2\xBB\xBF\xAA\xCE\xC4\xBC\xFE: %s";
inline constexpr char kCannotMakeFile[] =  // 生成文件%s时发生错误 !
    "\xC9\xFA\xB3\xC9\xCE\xC4\xBC\xFE%s\xCA\xB1\xB7\xA2\xC9\xFA\xB4\xED\xCE\xF3 !";
inline constexpr char kCalculationMessages[] =  // 计算信息
    "\xBC\xC6\xCB\xE3\xD0\xC5\xCF\xA2";
inline constexpr char kRombergIterations[] =  // 龙贝格积分函数中跌代次数大于20
    "\xC1\xFA\xB1\xB4\xB8\xF1\xBB\xFD\xB7\xD6\xBA\xAF\xCA\xFD\xD6\xD0\xB5\xF8\xB4\xFA\xB4\xCE\xCA\xFD\xB4\xF3\xD3\xDA"
    "20";
inline constexpr char kInterpolationPoints[] =  // 线性插值函数发现错误,两点距离太近 !
    "\xCF\xDF\xD0\xD4\xB2\xE5\xD6\xB5\xBA\xAF\xCA\xFD\xB7\xA2\xCF\xD6\xB4\xED\xCE\xF3,"
    "\xC1\xBD\xB5\xE3\xBE\xE0\xC0\xEB\xCC\xAB\xBD\xFC !";
inline constexpr char kReadingTables[] =  // 读入表段时错误
    "\xB6\xC1\xC8\xEB\xB1\xED\xB6\xCE\xCA\xB1\xB4\xED\xCE\xF3";
inline constexpr char kNoEntitySection[] =  // 找不到实体段的开始标志 !
    "\xD5\xD2\xB2\xBB\xB5\xBD\xCA\xB5\xCC\xE5\xB6\xCE\xB5\xC4\xBF\xAA\xCA\xBC\xB1\xEA\xD6\xBE !";
inline constexpr char kTooManyNumbers[] =  // 数字列表太长,最多1000000个 !
    "\xCA\xFD\xD7\xD6\xC1\xD0\xB1\xED\xCC\xAB\xB3\xA4,\xD7\xEE\xB6\xE0"
    "1000000\xB8\xF6 !";
inline constexpr char kUserConcrete[] =  // 用户定义混凝土
    "\xD3\xC3\xBB\xA7\xB6\xA8\xD2\xE5\xBB\xEC\xC4\xFD\xCD\xC1";
inline constexpr char kUserReinforcement[] =  // 用户定义钢筋
    "\xD3\xC3\xBB\xA7\xB6\xA8\xD2\xE5\xB8\xD6\xBD\xEE";
inline constexpr char kQueryContent[] =  // 查询内容
    "\xB2\xE9\xD1\xAF\xC4\xDA\xC8\xDD";
inline constexpr char kWrongContent[] =  // 文件内容错误 !
    "\xCE\xC4\xBC\xFE\xC4\xDA\xC8\xDD\xB4\xED\xCE\xF3 !";

// The title block.
inline constexpr char kProfessionLead[] =  // 专业负责
    "\xD7\xA8\xD2\xB5\xB8\xBA\xD4\xF0";
inline constexpr char kDesign[] =  // 设计
    "\xC9\xE8\xBC\xC6";
inline constexpr char kReview[] =  // 审核
    "\xC9\xF3\xBA\xCB";
inline constexpr char kDrawingNumber[] =  // 图号
    "\xCD\xBC\xBA\xC5";
inline constexpr char kProjectLead[] =  // 项目负责
    "\xCF\xEE\xC4\xBF\xB8\xBA\xD4\xF0";
inline constexpr char kCheck[] =  // 校对
    "\xD0\xA3\xB6\xD4";
inline constexpr char kApprove[] =  // 审定
    "\xC9\xF3\xB6\xA8";
inline constexpr char kDate[] =  // 日期
    "\xC8\xD5\xC6\xDA";
inline constexpr char kProjectName[] =  // 工程名称
    "\xB9\xA4\xB3\xCC\xC3\xFB\xB3\xC6";
inline constexpr char kDrawingName[] =  // 图名
    "\xCD\xBC\xC3\xFB";

// The counter-sign block, notes, tables of bars.
inline constexpr char kProfession[] =  // 专业
    "\xD7\xA8\xD2\xB5";
inline constexpr char kPerson[] =  // 姓名
    "\xD0\xD5\xC3\xFB";
inline constexpr char kNotes[] =  // 说明
    "\xCB\xB5\xC3\xF7";
inline constexpr char kBarList[] =  // 钢筋表
    "\xB8\xD6\xBD\xEE\xB1\xED";
inline constexpr char kBarMark[] =  // 编号
    "\xB1\xE0\xBA\xC5";
inline constexpr char kBarShape[] =  // 简图
    "\xBC\xF2\xCD\xBC";
inline constexpr char kBarSize[] =  // 规格
    "\xB9\xE6\xB8\xF1";
inline constexpr char kBarLength[] =  // 长度(mm)
    "\xB3\xA4\xB6\xC8(mm)";
inline constexpr char kBarCount[] =  // 根数
    "\xB8\xF9\xCA\xFD";
inline constexpr char kTotalLength[] =  // 总长(m)
    "\xD7\xDC\xB3\xA4(m)";
inline constexpr char kTotalMass[] =  // 重量(kg)
    "\xD6\xD8\xC1\xBF(kg)";
inline constexpr char kUnitMass[] =  // 单重(kg/m)
    "\xB5\xA5\xD6\xD8(kg/m)";
inline constexpr char kSum[] =  // 合计
    "\xBA\xCF\xBC\xC6";

}  // namespace qv::captions

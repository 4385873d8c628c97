#include "qvtools/widgets/viewer/captions.h"

#include <cstddef>
#include <iterator>

namespace qv::viewer {

namespace {

struct Caption {
  Text text;
  const char* chinese;
  const char* english;
};

constexpr Caption kCaptions[] = {
    {Text::FileMenu, "文件(&F)", "&File"},
    {Text::ViewMenu, "视图(&V)", "&View"},
    {Text::DirectionMenu, "视角(&D)", "&Direction"},
    {Text::PickMenu, "拾取(&P)", "&Pick"},
    {Text::FontMenu, "字体(&T)", "Fon&ts"},
    {Text::LanguageMenu, "语言(&L)", "&Language"},
    {Text::MeasureMenu, "量测(&M)", "&Measure"},
    {Text::CatchMenu, "捕捉", "Catch"},
    {Text::HelpMenu, "帮助(&H)", "&Help"},
    {Text::RecentMenu, "最近打开的图形", "Recent drawings"},
    {Text::PanMenu, "移动", "Pan"},
    {Text::Open, "打开…", "Open…"},
    {Text::Reload, "重新读入", "Reload"},
    {Text::Export, "输出所见画面…", "Export what is seen…"},
    {Text::Plot, "出图…", "Plot…"},
    {Text::Print, "打印…", "Print…"},
    {Text::Quit, "退出", "Quit"},
    {Text::ClearRecent, "清除列表", "Clear the list"},
    {Text::ShowAll, "全部显示", "Everything"},
    {Text::ShowPrevious, "前一视图", "Previous view"},
    {Text::WindowZoom, "窗口缩放", "Window zoom"},
    {Text::Enlarge, "放大", "Enlarge"},
    {Text::Reduce, "缩小", "Reduce"},
    {Text::Hand, "拖动", "Hand"},
    {Text::PanLeft, "向左", "Left"},
    {Text::PanRight, "向右", "Right"},
    {Text::PanUp, "向上", "Up"},
    {Text::PanDown, "向下", "Down"},
    {Text::DarkBackground, "深色背景", "Dark background"},
    {Text::Plan, "平面", "Plan"},
    {Text::FrontView, "前视", "Front"},
    {Text::BackView, "后视", "Back"},
    {Text::LeftView, "左视", "Left"},
    {Text::RightView, "右视", "Right"},
    {Text::SouthWestView, "西南等轴测", "South-west isometric"},
    {Text::SouthEastView, "东南等轴测", "South-east isometric"},
    {Text::NorthEastView, "东北等轴测", "North-east isometric"},
    {Text::NorthWestView, "西北等轴测", "North-west isometric"},
    {Text::OtherAngles, "其他视角…", "Other angles…"},
    {Text::PickEntities, "拾取图元", "Pick entities"},
    {Text::SelectAll, "全部拾取", "Pick all"},
    {Text::ClearPicks, "取消拾取", "Unpick all"},
    {Text::ShowPicked, "显示拾取的图元", "Show the picked entity"},
    {Text::CopyPicks, "复制拾取列表", "Copy the list of picks"},
    {Text::CopyPoint, "复制光标处坐标", "Copy the point at the cursor"},
    {Text::FindTexts, "查找文字…", "Find text…"},
    {Text::SavePicks, "拾取的图元存为图形…", "Save the picks as a drawing…"},
    {Text::OnlyPickedLayers, "只显示拾取图元的图层", "Only the picks' layers"},
    {Text::HidePickedLayers, "隐藏拾取图元的图层", "Hide the picks' layers"},
    {Text::ShowAllLayers, "显示全部图层", "All layers"},
    {Text::MeasureDistance, "距离", "Distance"},
    {Text::MeasureAngle, "角度", "Angle"},
    {Text::MeasureRadius, "半径与直径", "Radius and diameter"},
    {Text::MeasureArea, "面积(逐点)", "Area of points"},
    {Text::MeasureObjectArea, "面积(图元)", "Area of an object"},
    {Text::MeasureCoordinates, "坐标", "Coordinates"},
    {Text::FinishMeasure, "结束", "Finish"},
    {Text::TakeBackPoint, "退回一点", "Take a point back"},
    {Text::CopyMeasures, "复制量测结果", "Copy the measurements"},
    {Text::ClearMeasures, "清除量测结果", "Clear the measurements"},
    {Text::Catching, "捕捉开关", "Catch points"},
    {Text::NextCaught, "下一个捕捉点", "Next caught point"},
    {Text::CompareWith, "与旧图比较…", "Compare with an older drawing…"},
    {Text::NextPlace, "下一处", "Next place"},
    {Text::PreviousPlace, "上一处", "Previous place"},
    {Text::SwapSides, "新旧互换", "Swap old and new"},
    {Text::CloseTab, "关闭图形", "Close the drawing"},
    {Text::NextTab, "下一个图形", "Next drawing"},
    {Text::ImportReport, "读入说明…", "What was converted…"},
    {Text::TextFont, "文字与钢筋标注字体…", "Text and bar-label font…"},
    {Text::BigFont, "汉字大字体…", "Chinese big font…"},
    {Text::UsualFonts, "恢复默认字体", "Usual fonts"},
    {Text::Handling, "鼠标与键盘", "Mouse and keyboard"},
    {Text::About, "关于", "About"},
    {Text::ToolBar, "工具栏", "Tool bar"},
    {Text::LayersPanel, "图层", "Layers"},
    {Text::PicksPanel, "拾取的图元", "Picked entities"},
    {Text::PropertiesPanel, "特性", "Properties"},
    {Text::MeasuresPanel, "量测结果", "Measurements"},
    {Text::FindPanel, "查找文字", "Find text"},
    {Text::ComparePanel, "比较", "Comparison"},
    {Text::AllLayers, "全开", "All on"},
    {Text::NoLayers, "全关", "All off"},
    {Text::InvertLayers, "反选", "Invert"},
    {Text::LayerColumn, "图层", "Layer"},
    {Text::CountColumn, "图元数", "Entities"},
    {Text::NumberColumn, "序号", "No."},
    {Text::KindColumn, "类型", "Kind"},
    {Text::ColorColumn, "颜色", "Colour"},
    {Text::CoordinatesColumn, "坐标与尺寸", "Coordinates and sizes"},
    {Text::ByLayer, "随层", "by layer"},
    {Text::NameColumn, "项目", "Property"},
    {Text::ValueColumn, "值", "Value"},
    {Text::LineTypeColumn, "线型", "Line type"},
    {Text::LengthColumn, "长度", "Length"},
    {Text::PerimeterColumn, "周长", "Perimeter"},
    {Text::AreaColumn, "面积", "Area"},
    {Text::PointColumn, "点", "Point"},
    {Text::StartColumn, "起点", "Start"},
    {Text::EndColumn, "终点", "End"},
    {Text::CenterColumn, "圆心", "Centre"},
    {Text::RadiusColumn, "半径", "Radius"},
    {Text::AnglesColumn, "起止角", "Angles"},
    {Text::WordsColumn, "内容", "Words"},
    {Text::StyleColumn, "字样", "Style"},
    {Text::HeightColumn, "字高", "Height"},
    {Text::RotationColumn, "转角", "Rotation"},
    {Text::WidthFactorColumn, "宽度系数", "Width factor"},
    {Text::WidthColumn, "线宽", "Widths"},
    {Text::ClosedColumn, "闭合", "Closed"},
    {Text::VertexCountColumn, "顶点数", "Vertices"},
    {Text::BlockColumn, "块名", "Block"},
    {Text::ChangeColumn, "变化", "Change"},
    {Text::Yes, "是", "yes"},
    {Text::No, "否", "no"},
    {Text::KindPoint, "点", "Point"},
    {Text::KindLine, "直线", "Line"},
    {Text::KindText, "文字", "Text"},
    {Text::KindCircle, "圆", "Circle"},
    {Text::KindArc, "圆弧", "Arc"},
    {Text::KindPolyline, "多段线", "Polyline"},
    {Text::KindSolid, "填充四边形", "Solid"},
    {Text::KindFace, "三维面", "3D face"},
    {Text::KindInsert, "图块", "Block"},
    {Text::CatchEnd, "端点", "end"},
    {Text::CatchIntersection, "交点", "intersection"},
    {Text::CatchMiddle, "中点", "middle"},
    {Text::CatchCenter, "圆心", "centre"},
    {Text::CatchQuadrant, "象限点", "quadrant"},
    {Text::CatchPerpendicular, "垂足", "perpendicular"},
    {Text::CatchTangent, "切点", "tangent"},
    {Text::CatchNode, "节点", "node"},
    {Text::CatchInsertion, "插入点", "insertion"},
    {Text::CatchNearest, "最近点", "nearest"},
    {Text::ChangeRemoved, "删除", "removed"},
    {Text::ChangeAdded, "新增", "added"},
    {Text::ChangeMoved, "移动", "moved"},
    {Text::ChangeChanged, "修改", "changed"},
    {Text::DistanceIs, "距离 %1   Δx %2   Δy %3   角度 %4°", "distance %1   Δx %2   Δy %3   angle %4°"},
    {Text::SumIs, "   总长 %1(%2 段)", "   sum %1 (%2 legs)"},
    {Text::AngleIs, "角度 %1°   补角 %2°   周角余 %3°", "angle %1°   supplement %2°   rest of the turn %3°"},
    {Text::RadiusIs, "半径 %1   直径 %2   周长 %3   面积 %4", "radius %1   diameter %2   perimeter %3   area %4"},
    {Text::AreaIs, "面积 %1   周长 %2", "area %1   perimeter %2"},
    {Text::PointIs, "坐标 %1, %2", "point %1, %2"},
    {Text::RadiusOf, "半径 %1", "radius %1"},
    {Text::AnglesOf, "角度 %1° 至 %2°", "angles %1° to %2°"},
    {Text::LengthOf, "长 %1", "length %1"},
    {Text::HeightOf, "字高 %1", "height %1"},
    {Text::VerticesOf, "%1 个顶点", "%1 vertices"},
    {Text::ClosedVerticesOf, "%1 个顶点,闭合", "%1 vertices, closed"},
    {Text::NoDrawing, "把 DXF 图形拖到这里,或按 Ctrl+O 打开", "Drop a DXF drawing here, or press Ctrl+O to open one"},
    {Text::ScaleIs, "比例 %1 像素/单位", "%1 pixels a unit"},
    {Text::CountIs, "图元 %1 / %2", "%1 of %2 entities"},
    {Text::PickedIs, "已拾取 %1", "%1 picked"},
    {Text::PickHint, "点取图元,或拉窗口:左→右取全在窗内的,右→左连相交的也取",
     "Click an entity, or drag a window: to the right takes what is inside, to the left also what crosses it"},
    {Text::WindowHint, "给出要放大的窗口的两个角点", "Give two corners of the window to be shown"},
    {Text::HandHint, "按住左键拖动图形", "Drag the drawing with the left button"},
    {Text::MeasureHint, "点取要量的点;Tab 换捕捉点,F3 开关捕捉,右键或回车结束",
     "Click the points; Tab: next caught point, F3: catch on or off, right button or Enter: finish"},
    {Text::CatchIsOff, "捕捉已关", "catching is off"},
    {Text::MatchCase, "区分大小写", "Match case"},
    {Text::WholeWord, "全字匹配", "Whole words"},
    {Text::FindHint, "要查找的文字,回车跳到下一处", "Words to find; Enter goes to the next"},
    {Text::FoundCount, "第 %1 处,共 %2 处", "%1 of %2"},
    {Text::FoundNone, "没有找到", "Not found"},
    {Text::PlaceOf, "第 %1 处,共 %2 处", "Place %1 of %2"},
    {Text::NothingDiffers, "两图相同", "Nothing differs"},
    {Text::SheetShifted, "整图移动 %1, %2", "The sheet is shifted by %1, %2"},
    {Text::CompareTitle, "选择旧图", "Choose the older drawing"},
    {Text::ComparedWith, "%1 ↔ %2", "%1 ↔ %2"},
    {Text::PicksSaved, "已存 %1 个图元到 %2", "%1 entities are saved as %2"},
    {Text::SavePicksTitle, "拾取的图元存为图形", "Save the picks as a drawing"},
    {Text::ReportTitle, "读入说明", "What was converted"},
    {Text::ReportWord, "有转换", "converted"},
    {Text::Exported, "已输出 %1", "%1 is written"},
    {Text::Copied, "已复制", "Copied"},
    {Text::FontChanged, "字体已更换", "The font is changed"},
    {Text::FontsReplaced, "文字未用图中的字体 %1", "Texts are drawn in other fonts than %1"},
    {Text::Reloaded, "图形已重新读入", "The drawing has been read again"},
    {Text::ChangedUnreadable, "文件已改变但无法读入,仍显示原图形",
     "The file has changed but does not load; the drawing before it stays"},
    {Text::OpenTitle, "打开图形", "Open a drawing"},
    {Text::DrawingFiles, "DXF 图形", "DXF drawings"},
    {Text::AllFiles, "所有文件", "All files"},
    {Text::ExportTitle, "输出所见画面", "Export what is seen"},
    {Text::ShapeFontTitle, "选择 SHX 字体", "Choose an SHX font"},
    {Text::ShapeFontFiles, "SHX 字体", "SHX fonts"},
    {Text::AnglesTitle, "视角", "View angles"},
    {Text::AngleA, "绕竖轴旋转(度)", "Turned about the vertical axis (degrees)"},
    {Text::AngleB, "俯视角(度,90 为平面)", "Looking down (degrees, 90 is plan)"},
    {Text::Reading, "正在读入 %1", "Reading %1"},
    {Text::GiveUp, "放弃", "Give up"},
    {Text::GivenUp, "已放弃读入", "Reading was given up"},
    {Text::PlotTitle, "出图", "Plot"},
    {Text::PrintTitle, "打印", "Print"},
    {Text::PlotWhat, "内容", "What"},
    {Text::PlotSheets, "每个图框一页", "Each sheet a page"},
    {Text::PlotWhole, "全部图形一页", "The whole drawing"},
    {Text::PlotView, "所见画面", "What the window shows"},
    {Text::PlotPaper, "图纸", "Paper"},
    {Text::PaperOfSheet, "按图框(无图框则 A3)", "The sheet's own, else A3"},
    {Text::PlotOrientation, "方向", "Orientation"},
    {Text::OrientationOfDrawing, "随图形", "As the drawing lies"},
    {Text::Landscape, "横向", "Landscape"},
    {Text::Portrait, "纵向", "Portrait"},
    {Text::PlotScale, "比例", "Scale"},
    {Text::ScaleOfSheet, "按图框(无图框则充满图纸)", "The sheet's own, else fitted"},
    {Text::ScaleFits, "充满图纸", "Fit the paper"},
    {Text::PlotMargin, "页边距(毫米)", "Margin (mm)"},
    {Text::PlotPens, "笔宽", "Pens"},
    {Text::PensOfFile, "笔宽文件…", "A file…"},
    {Text::PensTitle, "选择笔宽文件", "Choose a file of pens"},
    {Text::PensFiles, "笔宽文件", "Files of pens"},
    {Text::PlotColors, "颜色", "Colours"},
    {Text::ColorsBlack, "黑色", "Black"},
    {Text::ColorsGrey, "灰度", "Grey"},
    {Text::ColorsOwn, "彩色", "Colours"},
    {Text::PlotDpi, "PNG 分辨率(点/英寸)", "PNG: dots an inch"},
    {Text::PlotSmooth, "PNG 平滑", "PNG: smooth"},
    {Text::WriteFile, "写入文件…", "Write a file…"},
    {Text::WriteFileTitle, "写入文件", "Write a file"},
    {Text::Cancel, "取消", "Cancel"},
    {Text::PageOf, "第 %1 页,共 %2 页", "Page %1 of %2"},
    {Text::PageIs, "%1,比例 1:%2", "%1, 1:%2"},
    {Text::DoesNotFit, "放不下:图形 %1 毫米,图纸 %2 毫米", "Does not fit: it takes %1 mm, the paper has %2 mm"},
    {Text::NoSuchPaper, "没有图纸 %1:应为 A4 至 A0、加长图幅,或“宽x高”毫米",
     "There is no paper %1: it is A4 to A0, a lengthened format, or WxH in mm"},
    {Text::NoSuchScale, "比例应为 1:50 这样的形式,不是 %1", "A scale is like 1:50, not %1"},
    {Text::NothingPlotted, "不能出图:%1", "Nothing was plotted: %1"},
    {Text::PaperDiffers, "第 %1 页的图纸为 %2 毫米,打印机的图纸只有 %3 毫米,会有缺失。仍要打印吗?",
     "Page %1 has paper of %2 mm, the printer's has %3 mm: a part will be missing. Print all the same?"},
    {Text::CannotOpen, "不能打开 %1\n%2", "%1 cannot be opened.\n%2"},
    {Text::Missing, "没有这个文件。", "There is no such file."},
    {Text::IsDirectory, "它是一个文件夹。", "It is a directory."},
    {Text::NotOpened, "没有读它的权限,或它正被占用。", "It may not be read, or is in use."},
    {Text::NoEntities, "它不是 DXF 图形。", "It is no DXF drawing."},
    {Text::CannotWrite, "不能写入 %1", "%1 cannot be written."},
    {Text::UnknownPicture, "画面文件的扩展名应为 .png、.svg 或 .pdf", "A picture ends in .png, .svg or .pdf."},
    {Text::NoFont, "%1 不是这一类的 SHX 字体", "%1 is no SHX font of this kind."},
    {Text::CannotPrint, "不能打印", "It cannot be printed."},
    {Text::HandlingText,
     "<table cellpadding='4'>"
     "<tr><td><b>滚轮</b></td><td>以光标为中心缩放</td></tr>"
     "<tr><td><b>按住中键</b></td><td>移动图形(双击中键:全部显示)</td></tr>"
     "<tr><td><b>左键</b></td><td>点取图元或拉窗口拾取;Shift 或 Ctrl 增减</td></tr>"
     "<tr><td><b>右键、Esc</b></td><td>放弃角点,退出模式;Esc 还取消拾取</td></tr>"
     "<tr><td><b>Z / H / S</b></td><td>窗口缩放 / 拖动 / 拾取</td></tr>"
     "<tr><td><b>M</b>,或 <b>I</b> 后按 <b>P A D R E C</b></td><td>量测:P 距离、A 角度、D 半径、R 面积、E 图元面积、C "
     "坐标</td></tr>"
     "<tr><td><b>F3 / Tab</b></td><td>捕捉开关 / 换捕捉点</td></tr>"
     "<tr><td><b>se sm sc sq si su sb sn sp "
     "st</b></td><td>量测时只捕捉:端点、中点、圆心、象限点、交点、垂足、切点、节点、插入点、最近点;sa 全部,sf "
     "不捕捉</td></tr>"
     "<tr><td><b>Ctrl+F</b></td><td>查找文字,回车到下一处</td></tr>"
     "<tr><td><b>N / Shift+N</b></td><td>比较:下一处 / 上一处</td></tr>"
     "<tr><td><b>Home / Backspace</b></td><td>全部显示 / 前一视图</td></tr>"
     "<tr><td><b>+ / − / 方向键</b></td><td>放大 / 缩小 / 移动</td></tr></table>",
     "<table cellpadding='4'>"
     "<tr><td><b>Wheel</b></td><td>zooms about the cursor</td></tr>"
     "<tr><td><b>Middle button</b></td><td>drags the drawing (a double click shows everything)</td></tr>"
     "<tr><td><b>Left button</b></td><td>picks an entity or by a window; Shift or Ctrl adds and removes</td></tr>"
     "<tr><td><b>Right button, Esc</b></td><td>give up a corner or a mode; Esc unpicks as well</td></tr>"
     "<tr><td><b>Z / H / S</b></td><td>window zoom / hand / picking</td></tr>"
     "<tr><td><b>M</b>, or <b>I</b> then <b>P A D R E C</b></td><td>measures: P distance, A angle, D radius, R area, E "
     "an object's area, C coordinates</td></tr>"
     "<tr><td><b>F3 / Tab</b></td><td>catching on and off / the next caught point</td></tr>"
     "<tr><td><b>se sm sc sq si su sb sn sp st</b></td><td>while measuring, catch one kind: end, middle, centre, "
     "quadrant, intersection, perpendicular, tangent, node, insertion, nearest; sa all, sf none</td></tr>"
     "<tr><td><b>Ctrl+F</b></td><td>finds texts; Enter goes to the next</td></tr>"
     "<tr><td><b>N / Shift+N</b></td><td>comparison: the next place / the previous one</td></tr>"
     "<tr><td><b>Home / Backspace</b></td><td>everything / the previous view</td></tr>"
     "<tr><td><b>+ / − / arrows</b></td><td>enlarge / reduce / pan</td></tr></table>"},
    {Text::NativeHandlingText,
     "滚轮:以光标为中心缩放\n按住中键:移动图形(双击中键:全部显示)\n"
     "左键:点取图元或拉窗口拾取;Shift 或 Ctrl 增减\n右键、Esc:放弃角点,退出模式\n"
     "M、Ctrl+1 至 Ctrl+5:量测;F3 / Tab:捕捉开关 / 换捕捉点\n"
     "se sm sc sq si su sb sn sp st:量测时只捕捉一种点;sa 全部,sf 不捕捉\nCtrl+F:查找文字\n\n"
     "本程序没有:多个图形的标签页、图形比较、边读边看、图层与属性面板、其他视角、选择字体、最近打开的图形。",
     "Wheel: zooms about the pointer\nMiddle button: drags the drawing (a double click shows everything)\n"
     "Left button: picks an entity or by a window; Shift or Ctrl adds and removes\n"
     "Right button, Esc: give up a corner or a mode\n"
     "M, Ctrl+1 to Ctrl+5: measure; F3 / Tab: catching on and off / the next caught point\n"
     "se sm sc sq si su sb sn sp st: catch one kind of point; sa all, sf none\nCtrl+F: finds texts\n\n"
     "This program has no tabs, no comparison, no reading in the background, no panels of layers and properties, no "
     "views from other directions, no choice of fonts, no recent drawings."},
    {Text::AboutText, "qvview %1\nDXF 图形浏览程序,QVTOOLS 的一部分",
     "qvview %1\nA viewer of DXF drawings, part of QVTOOLS"},
};

constexpr bool is_in_order() {
  std::size_t i = 0;
  for (const Caption& row : kCaptions)
    if (static_cast<std::size_t>(row.text) != i++) return false;
  return i == static_cast<std::size_t>(Text::kCount);
}
static_assert(is_in_order(), "every text has its row, at its own place");

}  // namespace

const char* caption(Text text, Language language) {
  const Caption& row = kCaptions[static_cast<std::size_t>(text)];
  return language == Language::Chinese ? row.chinese : row.english;
}

std::string filled(Text text, Language language, std::initializer_list<std::string_view> values) {
  std::string said;
  for (const char* p = caption(text, language); *p; ++p) {
    const std::size_t value = *p == '%' ? static_cast<std::size_t>(p[1] - '1') : values.size();
    if (value < values.size())
      said += values.begin()[value], ++p;
    else
      said += *p;
  }
  return said;
}

}  // namespace qv::viewer

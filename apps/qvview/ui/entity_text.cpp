#include "ui/entity_text.h"

#include <QtCore/QStringList>
#include <cmath>

#include "common/records.h"
#include "model/measuring.h"
#include "qvtools/platform/qt/qt_text.h"

namespace qvview {

namespace {

QString point(const qv::Point3& p) {
  const QString plan = QStringLiteral("%1, %2").arg(number(p.x), number(p.y));
  return p.z == 0 ? QLatin1Char('(') + plan + QLatin1Char(')') : QStringLiteral("(%1, %2)").arg(plan, number(p.z));
}

template <std::size_t N>
QString corners(const qv::Point3 (&points)[N]) {
  QStringList list;
  for (const qv::Point3& p : points) list << point(p);
  return list.join(QLatin1Char(' '));
}

// One for each kind; their own words stand first, so that a narrow column shows what matters.

QString describe_record(const ACAD_POINT& r, const Words&) {
  return point(r.m_Point);
}
QString describe_record(const ACAD_LINE& r, const Words& words) {
  const double length =
      std::hypot(static_cast<double>(r.m_End.x) - r.m_Start.x, static_cast<double>(r.m_End.y) - r.m_Start.y,
                 static_cast<double>(r.m_End.z) - r.m_Start.z);
  return QStringLiteral("%1 → %2  %3").arg(point(r.m_Start), point(r.m_End), words(Text::LengthOf, number(length)));
}
QString describe_record(const ACAD_TEXT& r, const Words& words) {
  const QString contents = QStringLiteral("“%1”  ").arg(qv::qt_text(r.m_szText));
  return contents + point(r.m_Insert) + QStringLiteral("  ") + words(Text::HeightOf, number(r.m_fHeight));
}
QString describe_record(const ACAD_CIRCLE& r, const Words& words) {
  return point(r.m_Center) + QStringLiteral("  ") + words(Text::RadiusOf, number(r.m_fRadius));
}
QString describe_record(const ACAD_ARC& r, const Words& words) {
  return QStringLiteral("%1  %2  %3")
      .arg(point(r.m_Center), words(Text::RadiusOf, number(r.m_fRadius)),
           words(Text::AnglesOf, number(r.m_fStartAngle), number(r.m_fEndAngle)));
}
QString describe_record(const ACAD_POLYLINE& r, const Words& words) {
  constexpr int kMostShown = 8;
  const int n = r.m_Vertices.GetSize();
  QStringList list{words((r.m_nFlags & 1) != 0 ? Text::ClosedVerticesOf : Text::VerticesOf, QString::number(n)) +
                   QStringLiteral(" ")};
  for (int i = 0; i < n && i < kMostShown; ++i) list << point(r.m_Vertices[i].m_Point);
  if (n > kMostShown) list << QStringLiteral("…");
  return list.join(QLatin1Char(' '));
}
QString describe_record(const ACAD_SOLID& r, const Words&) {
  return corners(r.m_Corner);
}
QString describe_record(const ACAD_3DFACE& r, const Words&) {
  return corners(r.m_Corner);
}
QString describe_record(const ACAD_INSERT& r, const Words&) {
  return QStringLiteral("%1  %2").arg(qv::qt_text(r.m_szBlock), point(r.m_Insert));
}

}  // namespace

QString number(double value) {
  return QString::fromStdString(shown_number(value));
}

QString kind_of(ACAD_ENTITY& entity, const Words& words) {
  return words(static_cast<Text>(static_cast<int>(Text::KindPoint) + entity.GetType()));
}

QString describe(ACAD_ENTITY& entity, const Words& words) {
  QString text;
  qv::visit_entity(entity, [&](const auto& record) { text = describe_record(record, words); });
  return text;
}

}  // namespace qvview

#include "scope/positionpanel.h"

#include <QLineEdit>
#include <QPushButton>

#include "scope/scopecontrol.h"

namespace {

QLineEdit* field(const QWidget* panel, const char* name) {
  return panel->findChild<QLineEdit*>(QString::fromLatin1(name));
}

}  // namespace

void ShowScopePosition(AppState& state, ScopeLink& link, QWidget* panel) {
  const std::optional<PositionFields> read = ReadScopePosition(state, link);
  if (!read) return;
  field(panel, "txtRAHour")->setText(read->txtRAHour);
  field(panel, "txtRAMin")->setText(read->txtRAMin);
  field(panel, "txtDecSign")->setText(read->txtDecSign);
  field(panel, "txtDecDeg")->setText(read->txtDecDeg);
  field(panel, "txtDecMin")->setText(read->txtDecMin);
}

QuickGotoFields QuickGotoFieldsOf(const QWidget* panel) {
  auto text = [panel](const char* name) { return field(panel, name)->text(); };
  return {text("txtGotoRAHour"),  text("txtGotoRAMin"),  text("txtGoToRASec"),
          text("txtGotoDecSign"), text("txtGotoDecDeg"), text("txtGotoDecMin"),
          text("txtGotoDecSec")};
}

void FlipDecSignOf(QWidget* panel) {
  const QString next = FlipDecSign(field(panel, "txtGotoDecSign")->text());
  field(panel, "txtGotoDecSign")->setText(next);
  panel->findChild<QPushButton*>(QStringLiteral("cmdDecSign"))->setText(next);
}

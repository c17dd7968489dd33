#include "lists/objectdetails.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

namespace {

QLabel* caption(const QString& text, QWidget* parent, const char* name) {
  auto* l = new QLabel(text, parent);
  l->setObjectName(QString::fromLatin1(name));
  return l;
}

}  // namespace

QWidget* BuildObjectDetails(QWidget* parent, bool compact, std::vector<QLineEdit*>& texts) {
  texts.clear();
  auto text = [&texts](int n) { return texts[size_t(n - 1)]; };
  auto* panel = new QWidget(parent);
  panel->setObjectName(QStringLiteral("fraDetails"));
  auto* grid = new QGridLayout(panel);
  grid->setContentsMargins(2, 0, 2, 0);
  grid->setHorizontalSpacing(4);
  grid->setVerticalSpacing(0);
  for (int n = 1; n <= 13; ++n) {
    auto* e = new QLineEdit(panel);
    e->setObjectName(QStringLiteral("Text%1").arg(n));
    e->setReadOnly(true);
    e->setMinimumWidth(8);
    texts.push_back(e);
  }
  QFont small = parent->font();
  small.setPointSizeF(small.pointSizeF() * 0.85);
  // Captions sit small above their fields, so the panel fits under the chart.
  auto label = [&](const QString& text, const char* name) {
    QLabel* l = caption(text, panel, name);
    l->setFont(small);
    return l;
  };
  auto box = [&](std::initializer_list<std::pair<QLineEdit*, int>> parts) {
    auto* w = new QWidget(panel);
    auto* h = new QHBoxLayout(w);
    h->setContentsMargins(0, 0, 0, 0);
    h->setSpacing(2);
    for (const auto& [e, stretch] : parts) h->addWidget(e, stretch);
    return w;
  };
  text(9)->setAlignment(Qt::AlignCenter);
  text(9)->setMaximumWidth(22);
  int row = 0;
  if (compact) {
    auto* head = caption(QStringLiteral("Current Object Info"), panel, "lblCurrentObjectInfo");
    QFont bold = head->font();
    bold.setBold(true);
    head->setFont(bold);
    grid->addWidget(head, row++, 0, 1, 6);
  }
  grid->addWidget(label(QStringLiteral("Category"), "lblCategory"), row, 0, 1, 2);
  grid->addWidget(label(QStringLiteral("Number"), "lblNumber"), row, 2, 1, 2);
  grid->addWidget(label(QStringLiteral("Magnitude"), "lblMagnitude"), row++, 4, 1, 2);
  grid->addWidget(text(1), row, 0, 1, 2);
  grid->addWidget(text(2), row, 2, 1, 2);
  grid->addWidget(text(6), row++, 4, 1, 2);
  grid->addWidget(label(QStringLiteral("Common/Alt Name"), "lblName"), row++, 0, 1, 6);
  grid->addWidget(text(3), row++, 0, 1, 6);
  grid->addWidget(label(QStringLiteral("Type (sub-category)"), "lblType"), row, 0, 1, 4);
  grid->addWidget(label(QStringLiteral("Constellation"), "lblConstellation"), row++, 4, 1, 2);
  grid->addWidget(text(4), row, 0, 1, 4);
  grid->addWidget(text(5), row++, 4, 1, 2);
  grid->addWidget(label(QStringLiteral("Right Ascension"), "lblRA"), row, 0, 1, 2);
  grid->addWidget(label(QStringLiteral("Declination"), "lblDec"), row, 2, 1, 2);
  grid->addWidget(label(QStringLiteral("Current Altitude"), "lblAltitude"), row++, 4, 1, 2);
  grid->addWidget(box({{text(7), 1}, {text(8), 1}}), row, 0, 1, 2);
  // Degrees take at most three figures; the minutes need room for a decimal.
  grid->addWidget(box({{text(9), 0}, {text(10), 2}, {text(11), 3}}), row, 2, 1, 2);
  grid->addWidget(text(13), row++, 4, 1, 2);
  grid->addWidget(label(QStringLiteral("Additional Information"), "lblInfo"), row++, 0, 1, 6);
  grid->addWidget(text(12), row++, 0, 1, 6);
  grid->setRowStretch(row, 1);
  // The declination's three fields get a little more than the two of right ascension.
  for (int c = 0; c < 6; ++c) grid->setColumnStretch(c, c == 2 || c == 3 ? 5 : 4);
  QFont strong = text(3)->font();
  strong.setBold(true);
  text(3)->setFont(strong);
  text(13)->setFont(strong);
  return panel;
}

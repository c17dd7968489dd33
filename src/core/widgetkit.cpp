#include "core/widgetkit.h"

#include <QToolButton>
#include <QVBoxLayout>

UpDownButtons::UpDownButtons(QWidget* parent) : QWidget(parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  auto make = [&](Qt::ArrowType arrow, int delta) {
    auto* b = new QToolButton(this);
    b->setArrowType(arrow);
    b->setAutoRepeat(true);
    b->setFixedSize(18, 12);
    b->setFocusPolicy(Qt::NoFocus);
    connect(b, &QToolButton::clicked, this, [this, delta] { emit stepped(delta); });
    layout->addWidget(b);
  };
  make(Qt::UpArrow, 1);
  make(Qt::DownArrow, -1);
}

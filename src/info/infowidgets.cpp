#include "info/infowidgets.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>

QLayout* InfoButtonRow(QDialog* dialog) {
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  auto* ok = new QPushButton(QStringLiteral("OK"), dialog);
  ok->setObjectName(QStringLiteral("cmdOK"));
  ok->setDefault(true);
  QObject::connect(ok, &QPushButton::clicked, dialog, &QDialog::accept);
  row->addWidget(ok);
  return row;
}

#include "info/frmsupport.h"

#include <QLabel>
#include <QVBoxLayout>

#include "info/aboutinfo.h"
#include "info/infowidgets.h"

frmSupport::frmSupport(QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("frmSupport"));
  setWindowTitle(QStringLiteral("Technical Support"));
  setModal(true);
  auto* root = new QVBoxLayout(this);
  auto* text = new QLabel(SupportLines().join(QStringLiteral("\n\n")), this);
  text->setObjectName(QStringLiteral("lblContact"));
  text->setWordWrap(true);
  text->setMinimumWidth(380);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse);
  root->addWidget(text);
  root->addLayout(InfoButtonRow(this));
}

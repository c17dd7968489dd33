#include "info/frmlicense.h"

#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "core/appstate.h"
#include "core/windowplacement.h"
#include "info/aboutinfo.h"
#include "info/infowidgets.h"

frmLicense::frmLicense(AppState& state, QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("frmLicense"));
  KeepWindowPlacement(this, state);
  setWindowTitle(QStringLiteral("Software License"));
  setModal(true);
  resize(640, 520);
  auto* root = new QVBoxLayout(this);
  auto* text = new QPlainTextEdit(this);
  text->setObjectName(QStringLiteral("txtLicense"));
  text->setReadOnly(true);
  text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text->setPlainText(LicenseText(state.licensePath()));
  root->addWidget(text);
  root->addLayout(InfoButtonRow(this));
}

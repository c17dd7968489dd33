#include "info/frmabout.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QVBoxLayout>

#include "core/appstate.h"
#include "info/aboutinfo.h"
#include "info/infowidgets.h"

frmAbout::frmAbout(AppState& state, QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("frmAbout"));
  setWindowTitle(QStringLiteral("About Tavorine"));
  setModal(true);
  const AboutInfo info = CollectAboutInfo(state);
  QStringList lines = AboutLines(info);

  auto* root = new QVBoxLayout(this);
  auto* top = new QHBoxLayout;
  auto* picture = new QLabel(this);
  picture->setObjectName(QStringLiteral("imgIcon"));
  picture->setPixmap(QIcon(QStringLiteral(":/icons/tavorine.svg")).pixmap(64, 64));
  picture->setAlignment(Qt::AlignTop);
  top->addWidget(picture);

  auto* text = new QVBoxLayout;
  auto* title = new QLabel(lines.takeFirst(), this);
  title->setObjectName(QStringLiteral("lblProgram"));
  QFont big = title->font();
  big.setPointSizeF(big.pointSizeF() * 1.6);
  big.setBold(true);
  title->setFont(big);
  text->addWidget(title);
  auto* details = new QLabel(lines.join(QLatin1Char('\n')), this);
  details->setObjectName(QStringLiteral("lblInfo"));
  details->setTextInteractionFlags(Qt::TextSelectableByMouse);
  text->addWidget(details);
  top->addLayout(text, 1);
  root->addLayout(top);
  root->addLayout(InfoButtonRow(this));
}

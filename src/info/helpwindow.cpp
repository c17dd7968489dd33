#include "info/helpwindow.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

#include "core/appstate.h"
#include "core/windowplacement.h"

HelpWindow::HelpWindow(AppState& state, QWidget* parent) : QWidget(parent, Qt::Window), state_(state) {
  setObjectName(QStringLiteral("HelpWindow"));
  KeepWindowPlacement(this, state);
  setWindowTitle(QStringLiteral("Tavorine Online Help"));
  resize(760, 640);
  auto* root = new QVBoxLayout(this);
  auto* row = new QHBoxLayout;
  auto* back = new QPushButton(QStringLiteral("&Back"), this);
  back->setObjectName(QStringLiteral("cmdBack"));
  auto* home = new QPushButton(QStringLiteral("&Contents"), this);
  home->setObjectName(QStringLiteral("cmdContents"));
  row->addWidget(back);
  row->addWidget(home);
  row->addStretch(1);
  root->addLayout(row);

  txtHelp_ = new QTextBrowser(this);
  txtHelp_->setObjectName(QStringLiteral("txtHelp"));
  txtHelp_->setOpenExternalLinks(true);
  root->addWidget(txtHelp_);
  connect(back, &QPushButton::clicked, txtHelp_, &QTextBrowser::backward);
  connect(txtHelp_, &QTextBrowser::backwardAvailable, back, &QPushButton::setEnabled);
  back->setEnabled(false);
  connect(home, &QPushButton::clicked, this, [this] { showSection(QStringLiteral("contents")); });
  connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this,
          &QWidget::close);

  const QString path = state_.helpPath();
  if (QFileInfo::exists(path))
    txtHelp_->setSource(QUrl::fromLocalFile(path));
  else
    txtHelp_->setPlainText(QStringLiteral("The help file was not found at ") + path +
                           QLatin1Char('.'));
}

void HelpWindow::showAndRaise() {
  if (isMinimized()) showNormal();
  show();
  raise();
  activateWindow();
}

void HelpWindow::showSection(const QString& anchor) {
  if (!anchor.isEmpty()) txtHelp_->scrollToAnchor(anchor);
}

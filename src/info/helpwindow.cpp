#include "info/helpwindow.h"

#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

#include "core/appstate.h"
#include "core/windowplacement.h"

// The help page; under Red Screen its own colours (blue headings, pale boxes) give way to the
// night scheme.
class HelpBrowser : public QTextBrowser {
 public:
  HelpBrowser(const AppState& state, QWidget* parent) : QTextBrowser(parent), state_(state) {}

  QVariant loadResource(int type, const QUrl& name) override {
    QVariant resource = QTextBrowser::loadResource(type, name);
    if (type != QTextDocument::HtmlResource || !state_.RedScreenOn) return resource;
    QString html = resource.typeId() == QMetaType::QByteArray
                       ? QString::fromUtf8(resource.toByteArray())
                       : resource.toString();
    html.replace(QStringLiteral("</head>"),
                 QStringLiteral("<style type=\"text/css\">body h1, body h2, body h3 "
                                "{ color: #ff0000; } body h2 { border-bottom: 1px solid #000000; } "
                                "body .tip, body .caution { background-color: #800000; "
                                "border: 1px solid #000000; }</style></head>"));
    return html;
  }

 private:
  const AppState& state_;
};

HelpWindow::HelpWindow(AppState& state, QWidget* parent)
    : QWidget(parent, Qt::Window), state_(state) {
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

  txtHelp = new HelpBrowser(state_, this);
  txtHelp->setObjectName(QStringLiteral("txtHelp"));
  txtHelp->setOpenExternalLinks(true);
  root->addWidget(txtHelp);
  connect(back, &QPushButton::clicked, txtHelp, &QTextBrowser::backward);
  connect(txtHelp, &QTextBrowser::backwardAvailable, back, &QPushButton::setEnabled);
  back->setEnabled(false);
  connect(home, &QPushButton::clicked, this, [this] { showSection(QStringLiteral("contents")); });
  connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this,
          &QWidget::close);

  redScreen_ = state_.RedScreenOn;
  const QString path = state_.helpPath();
  if (QFileInfo::exists(path)) txtHelp->setSource(QUrl::fromLocalFile(path));
  else
    txtHelp->setPlainText(QStringLiteral("The help file was not found at ") + path +
                          QLatin1Char('.'));
}

void HelpWindow::showAndRaise() {
  if (isMinimized()) showNormal();
  show();
  raise();
  activateWindow();
}

void HelpWindow::showSection(const QString& anchor) {
  if (!anchor.isEmpty()) txtHelp->scrollToAnchor(anchor);
}

void HelpWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  const bool recoloured =
      event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange;
  if (!recoloured || redScreen_ == state_.RedScreenOn) return;
  redScreen_ = state_.RedScreenOn;
  const int scrolled = txtHelp->verticalScrollBar()->value();
  txtHelp->reload();
  txtHelp->verticalScrollBar()->setValue(scrolled);
}

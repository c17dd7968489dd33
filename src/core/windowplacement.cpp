#include "core/windowplacement.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QScreen>
#include <QStyle>
#include <QWidget>
#include <QWindow>

#include "core/appstate.h"
#include "core/windowfit.h"

namespace {

class WindowPlacement : public QObject {
 public:
  WindowPlacement(QWidget* window, QString configFolder)
      : QObject(window), window_(window), folder_(std::move(configFolder)) {
    window->installEventFilter(this);
    // Exit ends the program without closing its windows: they are recorded on the way out.
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] {
      if (window_ && window_->isVisible()) save();
    });
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == window_) {
      if (event->type() == QEvent::Show && !placed_) {
        placed_ = true;
        place();
      } else if ((event->type() == QEvent::Hide && !event->spontaneous()) ||
                 event->type() == QEvent::Close) {
        if (placed_) save();
      }
    }
    return false;
  }

 private:
  void save() const {
    WriteWindowGeometry(folder_, window_->objectName(), window_->saveGeometry());
  }

  // The frame round the window: the real one once the window manager has put it on, until then
  // a title bar's height.
  QMargins frameMargins() const {
    if (const QWindow* handle = window_->windowHandle()) {
      const QMargins m = handle->frameMargins();
      if (!m.isNull()) return m;
    }
    return QMargins(0, window_->style()->pixelMetric(QStyle::PM_TitleBarHeight), 0, 0);
  }

  // A window seen before goes back where it was; one seen for the first time keeps the place
  // its parent or the window manager gives it. Either way it fits the screen it is on.
  void place() {
    const QByteArray saved = ReadWindowGeometry(folder_, window_->objectName());
    const bool restored = !saved.isEmpty() && window_->restoreGeometry(saved);
    if (window_->isMaximized() || window_->isFullScreen()) return;
    const QScreen* screen = window_->screen();
    if (!screen) return;
    const QMargins m = frameMargins();
    const QRect frame = window_->geometry().marginsAdded(m);
    const QSize smallest = window_->minimumSize().grownBy(m);
    const QRect fitted = FitFrame(frame, smallest, screen->availableGeometry());
    if (restored && fitted != frame) window_->setGeometry(fitted.marginsRemoved(m));
    else if (!restored && fitted.size() != frame.size()) window_->resize(fitted.size().shrunkBy(m));
  }

  QPointer<QWidget> window_;
  QString folder_;
  bool placed_ = false;
};

}  // namespace

void KeepWindowPlacement(QWidget* window, const AppState& state) {
  new WindowPlacement(window, state.configFolder);
}

#include "core/selectall.h"

#include <QEvent>
#include <QLineEdit>
#include <QTimer>

namespace {
class SelectAllFilter : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::FocusIn) {
      if (auto* edit = qobject_cast<QLineEdit*>(watched)) {
        // After the mouse press that gave the focus has placed the cursor.
        QTimer::singleShot(0, edit, [edit] { edit->selectAll(); });
      }
    }
    return false;
  }
};
}  // namespace

void SelectAllOnFocus(QLineEdit* field) {
  static auto* filter = new SelectAllFilter();
  field->installEventFilter(filter);
}

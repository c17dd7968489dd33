#include "core/redscreenstyle.h"

#include <QEvent>
#include <QIconEngine>
#include <QImage>
#include <QMdiSubWindow>
#include <QPainter>
#include <QPixmapCache>
#include <QStyleOption>

#include "core/redscreencolors.h"

namespace {

// A list window keeps its own window icon here while it shows the red one, and the red one's
// key, to tell it from an icon the program gives it meanwhile.
const char* const kOwnIcon = "redScreenOwnIcon";
const char* const kRedIcon = "redScreenRedIcon";

int PictureLevel(QIcon::Mode mode) {
  return mode == QIcon::Disabled ? kRedDisabledPictureLevel : kRedPictureLevel;
}

// Pictures are turned red once and kept, keyed by the picture and the level.
QPixmap CachedInRed(const QPixmap& picture, int brightest) {
  if (picture.isNull()) return picture;
  const QString key = QStringLiteral("redscreen:%1:%2").arg(picture.cacheKey()).arg(brightest);
  QPixmap red;
  if (!QPixmapCache::find(key, &red)) {
    red = PixmapInRed(picture, brightest);
    QPixmapCache::insert(key, red);
  }
  return red;
}

class RedIconEngine : public QIconEngine {
 public:
  explicit RedIconEngine(const QIcon& icon) : icon_(icon) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const qreal dpr = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    painter->drawPixmap(
        rect, CachedInRed(icon_.pixmap(rect.size(), dpr, mode, state), PictureLevel(mode)));
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return CachedInRed(icon_.pixmap(size, mode, state), PictureLevel(mode));
  }
  QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                       qreal scale) override {
    // `size` is in device pixels here.
    return CachedInRed(icon_.pixmap(size / scale, scale, mode, state), PictureLevel(mode));
  }
  QSize actualSize(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return icon_.actualSize(size, mode, state);
  }
  QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override {
    return icon_.availableSizes(mode, state);
  }
  QString iconName() override { return icon_.name(); }
  bool isNull() override { return icon_.isNull(); }
  QString key() const override { return QStringLiteral("RedScreen"); }
  QIconEngine* clone() const override { return new RedIconEngine(icon_); }

 private:
  QIcon icon_;
};

// Lets the style draw into a picture of `rect` and puts only its red on the painter: the white
// and grey it mixes into the palette's reds (highlights, glyphs, bevels) lose their green and
// blue. The red palette keeps its own shades.
template <typename Draw>
void DrawRedOnly(QPainter* painter, const QRect& rect, Draw draw) {
  if (rect.isEmpty()) return;
  const qreal dpr = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
  QImage layer((QSizeF(rect.size()) * dpr).toSize(), QImage::Format_ARGB32_Premultiplied);
  layer.setDevicePixelRatio(dpr);
  layer.fill(Qt::transparent);
  {
    QPainter p(&layer);
    p.setRenderHints(painter->renderHints());
    p.setFont(painter->font());
    p.setPen(painter->pen());
    p.setBrush(painter->brush());
    p.translate(-rect.topLeft());
    draw(&p);
  }
  for (int y = 0; y < layer.height(); ++y) {
    auto* line = reinterpret_cast<QRgb*>(layer.scanLine(y));
    for (int x = 0; x < layer.width(); ++x) line[x] &= 0xFFFF0000u;  // alpha and red
  }
  painter->drawImage(rect.topLeft(), layer);
}

// Shows a list window's icon in red, keeping its own for later.
void ShowRedIcon(QMdiSubWindow* frame) {
  const QIcon current = frame->windowIcon();
  if (frame->property(kRedIcon).toLongLong() == current.cacheKey()) return;
  // A window without an icon of its own shows its parent's; it goes back to that.
  const QIcon own = frame->testAttribute(Qt::WA_SetWindowIcon) ? current : QIcon();
  const QIcon red = IconInRed(current);
  frame->setProperty(kOwnIcon, QVariant::fromValue(own));
  frame->setProperty(kRedIcon, red.cacheKey());
  frame->setWindowIcon(red);
}

}  // namespace

QImage ImageInRed(QImage image, int brightest) {
  switch (image.format()) {
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied: break;
    default:
      image = image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                            : QImage::Format_RGB32);
  }
  // The weights of the brightness are linear, so premultiplied pixels come out right too.
  for (int y = 0; y < image.height(); ++y) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      const QRgb p = line[x];
      const int level =
          qGreen(p) == 0 && qBlue(p) == 0 ? qMin(qRed(p), brightest) : qGray(p) * brightest / 255;
      line[x] = qRgba(level, 0, 0, qAlpha(p));
    }
  }
  return image;
}

QPixmap PixmapInRed(const QPixmap& picture, int brightest) {
  QPixmap out = QPixmap::fromImage(ImageInRed(picture.toImage(), brightest));
  out.setDevicePixelRatio(picture.devicePixelRatio());
  return out;
}

QIcon IconInRed(const QIcon& icon) { return icon.isNull() ? icon : QIcon(new RedIconEngine(icon)); }

RedScreenStyle::RedScreenStyle(QStyle* base) : QProxyStyle(base) {}

// The frames of list windows and the buttons.
void RedScreenStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                   QPainter* painter, const QWidget* widget) const {
  switch (element) {
    case PE_FrameWindow:
    case PE_PanelButtonCommand:
    case PE_PanelButtonTool:
    case PE_FrameDefaultButton:
      DrawRedOnly(painter, option->rect,
                  [&](QPainter* p) { QProxyStyle::drawPrimitive(element, option, p, widget); });
      return;
    default: QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

// The lines of the toolbar.
void RedScreenStyle::drawControl(ControlElement element, const QStyleOption* option,
                                 QPainter* painter, const QWidget* widget) const {
  if (element != CE_ToolBar) {
    QProxyStyle::drawControl(element, option, painter, widget);
    return;
  }
  DrawRedOnly(painter, option->rect,
              [&](QPainter* p) { QProxyStyle::drawControl(element, option, p, widget); });
}

// The title bar of a list window and, when it is maximised, its buttons in the menu bar.
void RedScreenStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                        QPainter* painter, const QWidget* widget) const {
  if (control != CC_TitleBar && control != CC_MdiControls) {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    return;
  }
  DrawRedOnly(painter, option->rect,
              [&](QPainter* p) { QProxyStyle::drawComplexControl(control, option, p, widget); });
}

void RedScreenStyle::drawItemPixmap(QPainter* painter, const QRect& rect, int alignment,
                                    const QPixmap& pixmap) const {
  QProxyStyle::drawItemPixmap(painter, rect, alignment, CachedInRed(pixmap, kRedPictureLevel));
}

QIcon RedScreenStyle::standardIcon(StandardPixmap icon, const QStyleOption* option,
                                   const QWidget* widget) const {
  return IconInRed(QProxyStyle::standardIcon(icon, option, widget));
}

QPixmap RedScreenStyle::generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap,
                                            const QStyleOption* option) const {
  return CachedInRed(QProxyStyle::generatedIconPixmap(mode, pixmap, option), PictureLevel(mode));
}

// A list window may be polished before the program gives it its icon: the window is watched
// for icon changes while the style is on.
void RedScreenStyle::polish(QWidget* widget) {
  QProxyStyle::polish(widget);
  if (auto* frame = qobject_cast<QMdiSubWindow*>(widget)) {
    frame->installEventFilter(this);
    ShowRedIcon(frame);
  }
}

void RedScreenStyle::unpolish(QWidget* widget) {
  if (auto* frame = qobject_cast<QMdiSubWindow*>(widget)) {
    frame->removeEventFilter(this);
    const QVariant own = frame->property(kOwnIcon);
    const bool showsRed = frame->property(kRedIcon).toLongLong() == frame->windowIcon().cacheKey();
    frame->setProperty(kOwnIcon, QVariant());
    frame->setProperty(kRedIcon, QVariant());
    if (own.isValid() && showsRed) frame->setWindowIcon(own.value<QIcon>());
  }
  QProxyStyle::unpolish(widget);
}

bool RedScreenStyle::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::WindowIconChange)
    if (auto* frame = qobject_cast<QMdiSubWindow*>(watched)) ShowRedIcon(frame);
  return QProxyStyle::eventFilter(watched, event);
}

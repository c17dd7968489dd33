#pragma once

#include <QIcon>
#include <QPixmap>
#include <QProxyStyle>

// The brightest red a picture takes in Red Screen, and the red of a disabled one.
constexpr int kRedPictureLevel = 0xC0;
constexpr int kRedDisabledPictureLevel = 0x50;

// A picture in shades of red: each pixel's brightness becomes red, no brighter than
// `brightest`. A pixel that is red already keeps its red (up to `brightest`), so a picture
// turned red twice stays as it was.
QImage ImageInRed(QImage image, int brightest);
QPixmap PixmapInRed(const QPixmap& picture, int brightest);
// An icon that shows `icon` in red at every size and mode (disabled pictures darker).
QIcon IconInRed(const QIcon& icon);

// The widget style while Red Screen is on. The program's own style draws, with the red palette;
// what it mixes in colours of its own comes out red only: the white title and buttons of a list
// window's title bar, the buttons of a maximised list in the menu bar, the highlights of push
// and tool buttons, the toolbar's lines. Pictures (symbols of message boxes and file dialogs,
// pictures on buttons and labels, disabled pictures) come out in shades of red. List windows show
// their window icon in red while it is installed and get their own back when it goes.
class RedScreenStyle : public QProxyStyle {
  Q_OBJECT
 public:
  // `base` may be null: the application's default style.
  explicit RedScreenStyle(QStyle* base);

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget = nullptr) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget = nullptr) const override;
  void drawItemPixmap(QPainter* painter, const QRect& rect, int alignment,
                      const QPixmap& pixmap) const override;
  QIcon standardIcon(StandardPixmap icon, const QStyleOption* option = nullptr,
                     const QWidget* widget = nullptr) const override;
  QPixmap generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap,
                              const QStyleOption* option) const override;

  using QProxyStyle::polish;
  using QProxyStyle::unpolish;
  void polish(QWidget* widget) override;
  void unpolish(QWidget* widget) override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

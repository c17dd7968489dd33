#pragma once

#include <QWidget>
#include <array>
#include <functional>
#include <optional>
#include <vector>

#include "sky/skycalc.h"

class AppState;
class CatalogBrowser;
class QLabel;
class QLineEdit;
class QPushButton;
class QTimer;
class ScopeLink;
class SkyWidget;

// HHC, "Hyper Hand Control": the telescope driven straight from the catalogs. The eight
// catalog pages of the browser the list editor also carries, the details of the object in view
// with its place on the sky chart of this moment, and the telescope's commands. It holds no
// document; the pages' sort and filter are shared with the list editor.
class HHC : public QWidget {
  Q_OBJECT
 public:
  HHC(AppState& state, ScopeLink& link, QWidget* parent = nullptr);
  ~HHC() override;

  // The Filter dialog and the help window; the main window and tests set them.
  std::function<void(QWidget*)> showFilterDialog;
  std::function<void()> showHelp;

  // The window's routines.
  void Form_Activate();
  void ShowDetails();
  void LayoutGrids();
  void DrawSkyChart();
  void timerAltitude_Timer();
  void cmdGoto_Click();
  void cmdQuickGoto_Click();
  void cmdGetRA_Click();
  void cmdDecSign_Click();
  void cmdCDC_Click();
  void cmdFilterAlt_Click();

  CatalogBrowser* browser() const { return SSTab1; }
  SkyWidget* sky() const { return Sky; }
  QTimer* timer() const { return timerAltitude; }
  qint16 altitudeTicks() const { return AltitudeTicks; }
  void setAltitudeTicks(qint16 ticks) { AltitudeTicks = ticks; }
  const std::vector<SkyCoordinates>& mapStars() const { return stars_; }
  bool firstActivatePending() const { return FirstActivate; }

 protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void buildControls();
  void layoutControls();
  void tabChanged();
  // The position of the current row as the detail boxes show it; nothing on an empty page.
  std::optional<SkyPosition> objectInView() const;
  QLineEdit* detail(int n) const { return texts_[size_t(n - 1)]; }

  AppState& state_;
  ScopeLink& link_;
  bool FirstActivate = true;
  qint16 AltitudeTicks = 0;
  std::vector<SkyCoordinates> stars_;  // MapStars, read once when the window loads

  SkyWidget* Sky = nullptr;
  QWidget* details_ = nullptr;
  std::vector<QLineEdit*> texts_;  // Text1..Text13
  CatalogBrowser* SSTab1 = nullptr;
  QWidget* line_ = nullptr;
  QLabel* lblFilter = nullptr;
  QTimer* timerAltitude = nullptr;
};

#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "charts/alignchart.h"

class AppState;
class QCheckBox;
class QLabel;
class QMdiSubWindow;
class QPushButton;
class QTimer;
class SkyWidget;

// AlignStars, "Alignment Stars": the sky of the observing date with the alignment stars named,
// and beside it the pairs of them best to align the telescope on. A child window of the main
// window; it draws again at every activation and once a minute.
class AlignStars : public QWidget {
  Q_OBJECT
 public:
  explicit AlignStars(AppState& state, QWidget* parent = nullptr);
  ~AlignStars() override;

  // The date dialog, and what the Print button does; the main window and tests set them.
  std::function<void(QWidget*)> showUserDateDialog;
  std::function<void()> printRequested;

  // Activate, the timer, the check box and the names button all draw the chart, then the
  // pairs.
  void Form_Activate();
  void DrawAlignmentChart();
  void ShowBestPairs();

  const std::vector<AlignmentCandidate>& candidates() const { return candidates_; }
  const std::vector<PlacedText>& bestPairsText() const { return pairsText_; }
  SkyWidget* sky() const { return Sky; }
  bool showNames() const { return ShowNames; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void buildControls();
  void cmdUserDate_Click();
  void cmdToggleNames_Click();
  QMdiSubWindow* frame() const;
  int twipsOf(int pixels) const;

  AppState& state_;
  std::vector<MapStar> stars_;  // MapStars, read once when the window loads
  std::vector<AlignmentCandidate> candidates_;
  std::vector<PlacedText> pairsText_;
  bool ShowNames = true;
  bool resizing_ = false;

  SkyWidget* Sky = nullptr;
  QLabel* lblUserDate = nullptr;
  QPushButton* cmdUserDate = nullptr;
  QCheckBox* chkAutoAlignment = nullptr;
  QPushButton* cmdToggleNames = nullptr;
  QPushButton* cmdPrint = nullptr;
  QPushButton* cmdClose = nullptr;
  QTimer* timerAltitude = nullptr;
};

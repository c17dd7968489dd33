#pragma once

#include <QWidget>

class AppState;
class HelpBrowser;

// "Tavorine Online Help": the help page in a browser window of its own, not modal. The main
// window keeps one and raises it when asked again.
class HelpWindow : public QWidget {
  Q_OBJECT
 public:
  explicit HelpWindow(AppState& state, QWidget* parent = nullptr);

  // Shows the window, or brings it to the top when it is already open.
  void showAndRaise();
  // Shows the section with this anchor ("setup", "redscreen"...).
  void showSection(const QString& anchor);

 protected:
  // Red Screen recolours the application's palette and style sheet: the page follows.
  void changeEvent(QEvent* event) override;

 private:
  AppState& state_;
  HelpBrowser* txtHelp = nullptr;
  bool redScreen_ = false;
};

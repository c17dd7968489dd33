#pragma once

#include <QMainWindow>

class AppState;

// The frame of the program: menu, toolbar, position panel and the list windows inside.
class TavorineListMain : public QMainWindow {
  Q_OBJECT
 public:
  explicit TavorineListMain(AppState& state, QWidget* parent = nullptr);
  // The load step: start-up state, then Setup on a first run.
  void start();

 private:
  AppState& state_;
};

#pragma once

class AppState;
class QWidget;

// Lets a top-level window fit the screen it opens on and come back where the user left it last
// time (the geometry file of the configuration folder, under the window's object name). One
// call, in the window's constructor, is all a window needs.
void KeepWindowPlacement(QWidget* window, const AppState& state);

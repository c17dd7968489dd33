#pragma once

#include <QByteArray>
#include <QRect>
#include <QString>

// The frame rectangle a window takes in a screen's free area: as it is when it fits; otherwise
// no larger than the area (and never smaller than `minimum`), moved inside it, the top left
// corner (the title bar) first.
QRect FitFrame(const QRect& frame, const QSize& minimum, const QRect& area);

// The geometry file "windows.ini" in the configuration folder: for each window, by its object
// name, where it was last left. Empty when the window was never placed; a file that cannot be
// written costs only the placement.
QByteArray ReadWindowGeometry(const QString& configFolder, const QString& window);
void WriteWindowGeometry(const QString& configFolder, const QString& window,
                         const QByteArray& geometry);

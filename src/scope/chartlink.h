#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

#include "sky/skycalc.h"

class AppState;
class ScopeLink;

// Centring the planetarium Cartes du Ciel on an object.

// The one-line centring command, in the single-byte code page (degree sign B0):
// MOVE RA:5h34m00.00s DEC:-22°1'00" FOV:+5°00'00"
// Minutes are rounded to whole numbers, half to even, and a rounded 60 is carried into the
// next unit (RA wraps at 24h); the sign is "+", "-" or left out; nothing is padded.
QByteArray MoveChartCommand(double raHours, double raMinutes, const QString& decSign,
                            double decDegrees, double decMinutes, double fieldDegrees);

// The same centring as the planetarium's network server takes it, one command a line
// (without line ends): SETRA, SETDEC, SETFOV, REDRAW.
QStringList ChartServerCommands(double raHours, double raMinutes, const QString& decSign,
                                double decDegrees, double decMinutes, double fieldDegrees);

// Sends the centring to the planetarium's server (link.chartHost, link.chartPort), each
// command answered before the next, every step within link.chartTimeoutMs. True when all of
// it went through. Nothing listening: "Start CDC before using this feature."; any other
// failure: "Unable to communicate with CDC -<description> - <number>"; both titled "Error".
bool MoveChart(AppState& state, const ScopeLink& link, double raHours, double raMinutes,
               const QString& decSign, double decDegrees, double decMinutes, double fieldDegrees);

// cmdCDC of a window: MoveChart on the object in view with a field of 5 degrees, under the
// handler's own trap ("Unable to communicate with CDC -..."). Nothing happens when there is no
// object in view. True when the planetarium was centred, so the window can step behind it.
bool CentreChartOnObject(AppState& state, const ScopeLink& link,
                         const std::function<std::optional<SkyPosition>()>& objectInView);

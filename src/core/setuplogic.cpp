#include "core/setuplogic.h"

#include <QFileInfo>

#include "core/appstate.h"
#include "core/numtext.h"
#include "core/prompter.h"
#include "core/settings.h"
#include "scope/scopeport.h"
#include "scope/scopetypes.h"

QStringList ScopeTypeCaptions() {
  QStringList captions;
  for (const ScopeFamily& f : kScopeFamilies) captions << QString::fromLatin1(f.caption);
  return captions;
}

bool CommPortIsSerial(const QString& commPort) { return ScopeRoute::of(commPort).serial; }

SetupFields SetupOpeningFields(const ProgramSettings& s, const IndiSettings& indi) {
  SetupFields f;
  // A proxy address stays visible in the (disabled) field so that OK keeps it.
  const ScopeRoute route = ScopeRoute::of(s.CommPort);
  f.commPortSelected = route.serial;
  f.indiSelected = route.indi;
  f.indiHost = indi.Host;
  f.indiPort = PlainNumber(indi.Port);
  f.indiDevice = indi.Device;
  f.commPort = f.commPortSelected || s.CommPort.trimmed().startsWith(QLatin1String("HCD"))
                   ? s.CommPort
                   : QString();
  const int index = ScopeFamilyIndex(s.ScopeType);
  f.scopeIndex = index < 0 ? 0 : index;
  f.eastWest = EastWestCaption(s.LongHemi);
  f.northSouth = NorthSouthCaption(s.LatHemi);
  f.longDeg = PlainNumber(s.LongDeg);
  f.longMin = PlainNumber(s.LongMin);
  f.latDeg = PlainNumber(s.LatDeg);
  f.latMin = PlainNumber(s.LatMin);
  f.useWindowsTimeZone = s.UseWindowsTimeZone;
  if (!s.UseWindowsTimeZone) f.myTimeZone = PlainSingle(s.MyTimeZone);
  f.minAlt = PlainNumber(s.MinAlt);
  f.maxAlt = PlainNumber(s.MaxAlt);
  f.useAltLimit = s.UseAltLimit;
  f.dataDir = s.DataDir;
  return f;
}

IndiSettings IndiSettingsOf(const SetupFields& fields) {
  IndiSettings indi;
  if (!fields.indiHost.trimmed().isEmpty()) indi.Host = fields.indiHost.trimmed();
  const QString port = fields.indiPort.trimmed();
  if (IsNumeric(port)) {
    const double n = Val(port);
    if (n >= 1 && n <= 65535 && n == Int(n)) indi.Port = static_cast<qint32>(n);
  }
  indi.Device = fields.indiDevice.trimmed();
  return indi;
}

QString CommPortTextOnSelect(const QString& text) {
  if (text.trimmed().startsWith(QLatin1Char('/'))) return text;
  return Val(text) == 0 ? QStringLiteral("1") : text;
}

QString StepCommPort(const QString& text, int delta) {
  const QString t = text.trimmed();
  if (t.startsWith(QLatin1Char('/'))) {
    int start = t.size();
    while (start > 0 && t.at(start - 1).isDigit()) --start;
    if (start == t.size()) return text;
    const int n = qMax(0, t.mid(start).toInt() + delta);
    return t.left(start) + QString::number(n);
  }
  if (!IsNumeric(t) && !t.isEmpty()) return text;
  const double n = Val(t) + delta;
  return QString::number(static_cast<int>(qBound(1.0, n, 256.0)));
}

QString EastWestCaption(const QString& longHemi) {
  return longHemi == QLatin1String("E") ? QStringLiteral("East") : QStringLiteral("West");
}

QString NorthSouthCaption(const QString& latHemi) {
  return latHemi == QLatin1String("N") ? QStringLiteral("North") : QStringLiteral("South");
}

QString ToggleLongHemi(ProgramSettings& s) {
  s.LongHemi = s.LongHemi == QLatin1String("E") ? QStringLiteral("W") : QStringLiteral("E");
  return EastWestCaption(s.LongHemi);
}

QString ToggleLatHemi(ProgramSettings& s) {
  s.LatHemi = s.LatHemi == QLatin1String("N") ? QStringLiteral("S") : QStringLiteral("N");
  return NorthSouthCaption(s.LatHemi);
}

QString FolderMissingText(const QString& folder) {
  return QStringLiteral("This folder: \n") + folder + QStringLiteral("\ndoes not exist.");
}

bool SetupOk(AppState& state, SetupFields& fields) {
  ProgramSettings& s = state.settings;
  // 1, 2. The family (the export entry it once governed is hidden for every family).
  s.ScopeType = fields.scopeIndex >= 1 && fields.scopeIndex <= 8
                    ? QString::fromLatin1(kScopeFamilies[fields.scopeIndex].code)
                    : QStringLiteral("GT");
  // 3. The port as typed; the proxy route keeps an address typed after "HCD". The INDI server
  // and device are kept apart, also while another route is chosen.
  state.indi = IndiSettingsOf(fields);
  if (fields.indiSelected) s.CommPort = QStringLiteral("INDI");
  else if (fields.commPortSelected) s.CommPort = fields.commPort;
  else if (fields.commPort.trimmed().startsWith(QLatin1String("HCD")))
    s.CommPort = fields.commPort.trimmed();
  else s.CommPort = QStringLiteral("HCD");
  // 4. The site, strictly; each field is stored as soon as it converts.
  s.LongDeg = CInt(fields.longDeg);
  s.LongMin = CInt(fields.longMin);
  s.LatDeg = CInt(fields.latDeg);
  s.LatMin = CInt(fields.latMin);
  // 5. The time zone: a checked box clears the typed offset.
  s.MyTimeZone = fields.useWindowsTimeZone ? 0.0f : CSng(Val(fields.myTimeZone));
  // 6. The altitude limits.
  if (fields.useAltLimit) {
    s.MinAlt = CInt(Val(fields.minAlt));
    s.MaxAlt = CInt(Val(fields.maxAlt));
  } else {
    s.MinAlt = 20;
    s.MaxAlt = 90;
  }
  // 7. The folder must exist.
  const QString folder = fields.dataDir.trimmed();
  if (folder.isEmpty() || !QFileInfo(folder).isDir()) {
    state.prompter().message(QStringLiteral("Problem"), FolderMissingText(fields.dataDir));
    return false;
  }
  // 8, 9. Always kept with its closing separator.
  fields.dataDir = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
  s.DataDir = fields.dataDir;
  s.FirstRun = 0;
  // 10.
  SaveSettings(state, true);
  SaveIndiSettings(state);
  return true;
}

void SetupCancel(AppState& state) {
  if (!QFileInfo::exists(state.settingsPath())) SaveSettings(state, false);
}

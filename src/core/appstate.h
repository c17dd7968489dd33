#pragma once

#include <QDateTime>
#include <QString>
#include <array>
#include <functional>
#include <optional>

class Prompter;

// The settings record kept in TavorineList.ini, in file order.
struct ProgramSettings {
  QString ScopeType = QStringLiteral("GT");
  QString CommPort = QStringLiteral("1");
  QString DataDir;
  qint16 FirstRun = 1;
  bool UseWindowsTimeZone = true;
  float MyTimeZone = 0;
  QString LongHemi = QStringLiteral("E");
  qint16 LongDeg = 127;
  qint16 LongMin = 40;
  QString LatHemi = QStringLiteral("N");
  qint16 LatDeg = 26;
  qint16 LatMin = 20;
  qint16 MinAlt = 20;
  qint16 MaxAlt = 90;
  bool UseAltLimit = true;
  qint32 ObjectColor = 200;
};

// The filter record kept in Filter.ini and in .flt files, in file order. "Max" is the bright
// end of a magnitude range and "Min" the faint end.
struct FilterSettings {
  bool FltAlt = true;
  qint16 FltMinAlt = 20;
  bool FltGal = true;
  float FltGalMax = 0, FltGalMin = 12;
  bool FltGC = true;
  float FltGCMax = 0, FltGCMin = 12;
  bool FltOC = true;
  float FltOCMax = 0, FltOCMin = 12;
  bool FltPN = true;
  float FltPNMax = 0, FltPNMin = 12;
  bool FltNeb = true;
  float FltNebMax = 0, FltNebMin = 12;
  float FltDSSepMax = 30, FltDSSepMin = 2;
  float FltDSMagMax = -2, FltDSMagMin = 10;
  float FltDSMagDifMax = 10, FltDSMagDifMin = 0;
  float FltUserMagMax = -2, FltUserMagMin = 12;
};

// The INDI route's server and telescope device (CommPort "INDI"). TavorineList.ini has no
// room for them, so they live in a small file of their own beside it, TavorineINDI.ini.
struct IndiSettings {
  QString Host = QStringLiteral("localhost");
  qint32 Port = 7624;
  QString Device = QStringLiteral("Telescope Simulator");
};

struct FileEntry {
  QString title;  // shown in menus: a file title, or the title stored in a list document
  QString path;   // full path
};

// The query state of one catalog page, shared by the list editor and the hand control window.
struct PageQuery {
  QString OrderBy;
  QString Where;
  QString Filter;
  QString SortField;
};

// Every shared variable of the program lives here. Start-up makes one AppState and hands it to
// whoever needs it.
class AppState {
 public:
  explicit AppState(Prompter& prompter);

  Prompter& prompter() const { return *prompter_; }
  void setPrompter(Prompter& p) { prompter_ = &p; }

  // Folders. programFolder holds the read-only program files (catalogs, template, help,
  // licence); configFolder the three small settings files; defaultDataDir the list folder used
  // until Setup chooses another.
  QString programFolder;
  QString configFolder;
  QString defaultDataDir;
  // The drive C: of a Windows compatibility layer (Wine), where the Windows programs that
  // take tours may be installed; empty when there is none.
  QString windowsDriveC;

  QString settingsPath() const;     // TavorineList.ini
  QString filterPath() const;       // Filter.ini
  QString recentFilesPath() const;  // TVRNMRU.dat
  QString indiPath() const;         // TavorineINDI.ini
  QString catalogPath() const;      // TavorineList.mdb
  QString templatePath() const;     // TavorineTemplate.tmp
  QString userListPath() const;     // DataDir + TavorineUserList.mdb
  QString helpPath() const;         // help.htm
  QString licensePath() const;      // LICENSE

  // The clocks and the system's time zone (both cheap to read; see sky/systemzone.h). Tests
  // replace them.
  std::function<QDateTime()> clock;
  std::function<std::optional<double>()> systemUtcOffsetHours;
  QDateTime now() const { return clock(); }

  ProgramSettings settings;
  FilterSettings filter;
  IndiSettings indi;

  QDateTime UserDate;
  bool FilterOn = false;
  bool RedScreenOn = false;
  qint16 PrintCopies = 1;
  QString PrintStyle;      // the list style last printed
  QString CurrentPrinter;  // the printer print-outs go to; empty until the first print dialog
  bool ImportHasHeader = true;
  QString LastListFolder;
  QString LastImportFolder;
  QString UserSearchField = QStringLiteral("ObjectNum");
  QString UserSearchText;
  QString EditUserListCaller;
  QString ClearGotoChoice;
  bool FilterCancelled = false;
  int FilterFormTop = 0;

  // Open list documents: OpenFiles is packed in order of opening (rows 1 to 10, row 0 unused);
  // OpenSlotFile holds the path of each window slot 1 to 9 ("" is free; index 0 unused).
  qint16 OpenFileCount = 0;
  std::array<FileEntry, 11> OpenFiles;
  std::array<QString, 10> OpenSlotFile;

  // Recent files, row 0 the most recent; an empty title ends the used rows. MRUShown says which
  // menu entries are visible, MRUSeparatorShown whether the separator is.
  std::array<FileEntry, 5> MRUFiles;
  std::array<bool, 5> MRUShown{};
  bool MRUSeparatorShown = false;

  // Query state of the eight catalog pages, by query set number (not tab index).
  std::array<PageQuery, 8> Pages;

  void resetPages();

 private:
  Prompter* prompter_;
};

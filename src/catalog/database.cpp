#include "catalog/database.h"

#include <sqlite3.h>

#include <QFileInfo>
#include <QVarLengthArray>

#include <charconv>
#include <cmath>
#include <cstring>
#include <optional>

#include "catalog/jetsql.h"
#include "core/apperror.h"
#include "core/numtext.h"

namespace {

// Why a file that should take a write does not, as far as the file system tells.
QString whyNotWritten(const QString& file) {
  const QFileInfo info(file);
  if (!info.exists()) return QStringLiteral("the file is no longer there");
  if (!QFileInfo(info.absolutePath()).isWritable())
    return QStringLiteral("its folder cannot be written");
  if (!info.isWritable()) return QStringLiteral("the file is read-only");
  return QString();
}

AppError dbError(sqlite3* db) {
  const char* msg = db ? sqlite3_errmsg(db) : "out of memory";
  AppError e(ErrNo::Database, QString::fromUtf8(msg));
  // An error of the file rather than of the query names the file, and says why when it can.
  const char* file = db ? sqlite3_db_filename(db, "main") : nullptr;
  if (file && *file) {
    const QString path = QString::fromUtf8(file);
    switch (sqlite3_errcode(db)) {
      case SQLITE_READONLY:
      case SQLITE_CANTOPEN:
      case SQLITE_IOERR:
      case SQLITE_PERM: e.about(path, whyNotWritten(path)); break;
      case SQLITE_BUSY:
      case SQLITE_LOCKED:
      case SQLITE_NOTADB:
      case SQLITE_CORRUPT:
      case SQLITE_FULL: e.about(path); break;
      default: break;
    }
  }
  return e;
}

// ---- the classic query functions -------------------------------------------------------

const char* const kInvalidCall = "Invalid procedure call or argument";

QString textOf(sqlite3_value* v) {
  switch (sqlite3_value_type(v)) {
    case SQLITE_INTEGER: return QString::number(sqlite3_value_int64(v));
    case SQLITE_FLOAT: return PlainNumber(sqlite3_value_double(v));
    case SQLITE_NULL: return QString();
    default:
      return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_value_text(v)),
                               sqlite3_value_bytes(v));
  }
}

// Val of several values read as one text, Null counting as empty: the translation of
// Val(a & b), which reads the same number as joining the texts first would.
void fnValJoined(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  if (argc == 0) {
    sqlite3_result_error(ctx, "wrong number of arguments to function val()", -1);
    return;
  }
  QVarLengthArray<char, 64> joined;
  for (int i = 0; i < argc; ++i) {
    if (sqlite3_value_type(argv[i]) == SQLITE_NULL) continue;
    const char* text = reinterpret_cast<const char*>(sqlite3_value_text(argv[i]));
    joined.append(text, sqlite3_value_bytes(argv[i]));
  }
  // A query asks the same twice a row (the declination's sign in the altitude filter).
  thread_local QByteArray lastText;
  thread_local double lastValue = 0;
  if (joined.size() == lastText.size() &&
      std::memcmp(joined.constData(), lastText.constData(), size_t(joined.size())) == 0) {
    sqlite3_result_double(ctx, lastValue);
    return;
  }
  const double r = ValUtf8(joined.constData(), joined.size());
  lastText = QByteArray(joined.constData(), joined.size());
  lastValue = r;
  sqlite3_result_double(ctx, r);
}

void fnVal(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  if (argc != 1) {
    fnValJoined(ctx, argc, argv);
    return;
  }
  sqlite3_value* v = argv[0];
  switch (sqlite3_value_type(v)) {
    case SQLITE_INTEGER: sqlite3_result_int64(ctx, sqlite3_value_int64(v)); return;
    case SQLITE_FLOAT: sqlite3_result_double(ctx, sqlite3_value_double(v)); return;
    case SQLITE_NULL: sqlite3_result_int(ctx, 0); return;
    default: break;
  }
  // The program's own conversion, over the text's bytes as the engine holds them.
  const char* text = reinterpret_cast<const char*>(sqlite3_value_text(v));
  sqlite3_result_double(ctx, ValUtf8(text, sqlite3_value_bytes(v)));
}

void resultText(sqlite3_context* ctx, const QString& s) {
  const QByteArray u = s.toUtf8();
  sqlite3_result_text(ctx, u.constData(), u.size(), SQLITE_TRANSIENT);
}

// Whole-number arguments are rounded half to even, as the classic conversions do.
bool wholeArg(sqlite3_value* v, qint64* out) {
  const double d = sqlite3_value_double(v);
  if (!std::isfinite(d) || std::fabs(d) > 2147483647.0) return false;
  *out = static_cast<qint64>(std::nearbyint(d));
  return true;
}

void fnMid(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  if (sqlite3_value_type(argv[0]) == SQLITE_NULL) {
    sqlite3_result_null(ctx);
    return;
  }
  qint64 start = 0, length = -1;
  if (sqlite3_value_type(argv[1]) == SQLITE_NULL || !wholeArg(argv[1], &start) || start < 1 ||
      (argc == 3 &&
       (sqlite3_value_type(argv[2]) == SQLITE_NULL || !wholeArg(argv[2], &length) || length < 0))) {
    sqlite3_result_error(ctx, kInvalidCall, -1);
    return;
  }
  const QString s = textOf(argv[0]);
  if (start > s.size()) {
    sqlite3_result_text(ctx, "", 0, SQLITE_STATIC);
    return;
  }
  resultText(ctx, s.mid(int(start - 1), argc == 3 ? int(qMin<qint64>(length, s.size())) : -1));
}

void fnInstr(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  qint64 start = 1;
  int t = 0;
  if (argc == 3) {
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL || !wholeArg(argv[0], &start) || start < 1) {
      sqlite3_result_error(ctx, kInvalidCall, -1);
      return;
    }
    t = 1;
  }
  if (sqlite3_value_type(argv[t]) == SQLITE_NULL ||
      sqlite3_value_type(argv[t + 1]) == SQLITE_NULL) {
    sqlite3_result_null(ctx);
    return;
  }
  const QString text = textOf(argv[t]);
  const QString find = textOf(argv[t + 1]);
  if (start > text.size()) {
    sqlite3_result_int(ctx, 0);
    return;
  }
  if (find.isEmpty()) {
    sqlite3_result_int64(ctx, start);
    return;
  }
  const int at = text.indexOf(find, int(start - 1), Qt::CaseInsensitive);
  sqlite3_result_int(ctx, at + 1);
}

void fnTrim(sqlite3_context* ctx, int, sqlite3_value** argv) {
  sqlite3_value* v = argv[0];
  switch (sqlite3_value_type(v)) {
    case SQLITE_NULL: sqlite3_result_null(ctx); return;
    case SQLITE_INTEGER:
    case SQLITE_FLOAT: resultText(ctx, textOf(v)); return;
    default: break;
  }
  const char* s = reinterpret_cast<const char*>(sqlite3_value_text(v));
  int n = sqlite3_value_bytes(v);
  int b = 0;
  while (b < n && s[b] == ' ') ++b;
  while (n > b && s[n - 1] == ' ') --n;
  sqlite3_result_text(ctx, s + b, n - b, SQLITE_TRANSIENT);
}

// The altitude filter writes the same sine and cosine three times for each row: a two-entry
// memory of the last arguments saves most of the work. The program has one thread.
template <double (*F)(double)>
void fnMath(sqlite3_context* ctx, int, sqlite3_value** argv) {
  if (sqlite3_value_type(argv[0]) == SQLITE_NULL) {
    sqlite3_result_null(ctx);
    return;
  }
  thread_local double arg[2] = {0, 0}, res[2] = {F(0), F(0)};
  thread_local int next = 0;
  const double x = sqlite3_value_double(argv[0]);
  double r;
  if (x == arg[0]) r = res[0];
  else if (x == arg[1]) r = res[1];
  else {
    r = F(x);
    arg[next] = x;
    res[next] = r;
    next ^= 1;
  }
  sqlite3_result_double(ctx, r);
}

double atanOf(double x) { return std::atan(x); }
double sinOf(double x) { return std::sin(x); }
double cosOf(double x) { return std::cos(x); }

void fnSqr(sqlite3_context* ctx, int, sqlite3_value** argv) {
  if (sqlite3_value_type(argv[0]) == SQLITE_NULL) {
    sqlite3_result_null(ctx);
    return;
  }
  const double x = sqlite3_value_double(argv[0]);
  if (x < 0) {
    sqlite3_result_error(ctx, kInvalidCall, -1);
    return;
  }
  sqlite3_result_double(ctx, std::sqrt(x));
}

// A Like pattern given as an expression rather than a literal: * and ? become % and _, and
// the engine's own wildcards are escaped with a backslash.
void fnLikePattern(sqlite3_context* ctx, int, sqlite3_value** argv) {
  if (sqlite3_value_type(argv[0]) == SQLITE_NULL) {
    sqlite3_result_null(ctx);
    return;
  }
  resultText(ctx, LikePatternToSqlite(textOf(argv[0])));
}

int collateObjectNumber(void*, int lengthA, const void* a, int lengthB, const void* b) {
  return CompareObjectNumbers(QByteArrayView(static_cast<const char*>(a), lengthA),
                              QByteArrayView(static_cast<const char*>(b), lengthB));
}

void create(sqlite3* db, const char* name, int nArg,
            void (*fn)(sqlite3_context*, int, sqlite3_value**)) {
  const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
  sqlite3_create_function_v2(db, name, nArg, flags, nullptr, fn, nullptr, nullptr, nullptr);
}

}  // namespace

void RegisterClassicFunctions(sqlite3* db) {
  create(db, "val", 1, fnVal);
  create(db, "val", -1, fnVal);
  create(db, "mid", 2, fnMid);
  create(db, "mid", 3, fnMid);
  create(db, "instr", 2, fnInstr);
  create(db, "instr", 3, fnInstr);
  create(db, "trim", 1, fnTrim);
  create(db, "atn", 1, fnMath<atanOf>);
  create(db, "sin", 1, fnMath<sinOf>);
  create(db, "cos", 1, fnMath<cosOf>);
  create(db, "sqr", 1, fnSqr);
  create(db, "likepattern", 1, fnLikePattern);
  sqlite3_create_collation_v2(db, kObjectNumberCollation, SQLITE_UTF8, nullptr, collateObjectNumber,
                              nullptr);
}

int CompareObjectNumbers(QByteArrayView a, QByteArrayView b) {
  const auto trimmed = [](QByteArrayView t) {
    while (!t.isEmpty() && t.front() == ' ') t = t.sliced(1);
    while (!t.isEmpty() && t.back() == ' ') t.chop(1);
    return t;
  };
  // The leading number: digits with an optional fraction; `rest` is what follows it.
  const auto leading = [](QByteArrayView t, QByteArrayView* rest) -> std::optional<double> {
    qsizetype n = 0;
    while (n < t.size() && std::isdigit(static_cast<unsigned char>(t[n]))) ++n;
    if (n == 0) return std::nullopt;
    if (n + 1 < t.size() && t[n] == '.' && std::isdigit(static_cast<unsigned char>(t[n + 1])))
      for (++n; n < t.size() && std::isdigit(static_cast<unsigned char>(t[n])); ++n) {
      }
    double v = 0;
    std::from_chars(t.data(), t.data() + n, v);
    *rest = t.sliced(n);
    return v;
  };
  const auto noCase = [](QByteArrayView x, QByteArrayView y) {
    const int c = qstrnicmp(x.data(), x.size(), y.data(), y.size());
    return c < 0 ? -1 : c > 0 ? 1 : 0;
  };
  const QByteArrayView ta = trimmed(a), tb = trimmed(b);
  QByteArrayView restA, restB;
  const std::optional<double> na = leading(ta, &restA), nb = leading(tb, &restB);
  if (na && !nb) return -1;
  if (nb && !na) return 1;
  if (na && nb) {
    if (*na != *nb) return *na < *nb ? -1 : 1;
    if (const int c = noCase(restA, restB)) return c;
  }
  if (const int c = noCase(ta, tb)) return c;
  return noCase(a, b);
}

QString QuoteIdentifier(const QString& name) {
  QString n = name;
  if (n.startsWith(QLatin1Char('[')) && n.endsWith(QLatin1Char(']'))) n = n.mid(1, n.size() - 2);
  n.replace(QLatin1Char('"'), QStringLiteral("\"\""));
  return QLatin1Char('"') + n + QLatin1Char('"');
}

// ---- Statement ---------------------------------------------------------------------------

Statement::~Statement() {
  if (stmt_) sqlite3_finalize(stmt_);
}

Statement::Statement(Statement&& other) noexcept : db_(other.db_), stmt_(other.stmt_) {
  other.stmt_ = nullptr;
}

Statement& Statement::operator=(Statement&& other) noexcept {
  if (this != &other) {
    if (stmt_) sqlite3_finalize(stmt_);
    db_ = other.db_;
    stmt_ = other.stmt_;
    other.stmt_ = nullptr;
  }
  return *this;
}

void Statement::bind(int index, const QVariant& value) {
  int rc;
  if (value.isNull()) {
    rc = sqlite3_bind_null(stmt_, index);
  } else {
    switch (value.typeId()) {
      case QMetaType::Int:
      case QMetaType::LongLong:
      case QMetaType::UInt:
      case QMetaType::Short:
      case QMetaType::Bool: rc = sqlite3_bind_int64(stmt_, index, value.toLongLong()); break;
      case QMetaType::Double:
      case QMetaType::Float: rc = sqlite3_bind_double(stmt_, index, value.toDouble()); break;
      default: {
        const QByteArray u = value.toString().toUtf8();
        rc = sqlite3_bind_text(stmt_, index, u.constData(), u.size(), SQLITE_TRANSIENT);
      }
    }
  }
  if (rc != SQLITE_OK) throw dbError(db_);
}

void Statement::bindInt64(int index, qint64 value) {
  if (sqlite3_bind_int64(stmt_, index, value) != SQLITE_OK) throw dbError(db_);
}

bool Statement::step() {
  const int rc = sqlite3_step(stmt_);
  if (rc == SQLITE_ROW) return true;
  if (rc == SQLITE_DONE) return false;
  AppError e = dbError(db_);
  sqlite3_reset(stmt_);
  throw e;
}

void Statement::reset() {
  sqlite3_reset(stmt_);
  sqlite3_clear_bindings(stmt_);
}

int Statement::columnCount() const { return sqlite3_column_count(stmt_); }

QString Statement::columnName(int index) const {
  return QString::fromUtf8(sqlite3_column_name(stmt_, index));
}

QVariant Statement::value(int index) const {
  switch (sqlite3_column_type(stmt_, index)) {
    case SQLITE_INTEGER: return QVariant(qlonglong(sqlite3_column_int64(stmt_, index)));
    case SQLITE_FLOAT: return QVariant(sqlite3_column_double(stmt_, index));
    case SQLITE_NULL: return QVariant();
    default:
      return QVariant(
          QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt_, index)),
                            sqlite3_column_bytes(stmt_, index)));
  }
}

qint64 Statement::int64Value(int index) const { return sqlite3_column_int64(stmt_, index); }
double Statement::doubleValue(int index) const { return sqlite3_column_double(stmt_, index); }
bool Statement::isNull(int index) const { return sqlite3_column_type(stmt_, index) == SQLITE_NULL; }

// ---- Database ----------------------------------------------------------------------------

Database::Database(const QString& path, Mode mode) : path_(path), mode_(mode) {
  const int flags =
      (mode == Mode::ReadOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE) | SQLITE_OPEN_NOMUTEX;
  const int rc = sqlite3_open_v2(path.toUtf8().constData(), &db_, flags, nullptr);
  if (rc != SQLITE_OK) {
    AppError e = dbError(db_);
    if (db_ && !e.description.contains(path)) e.about(path);
    sqlite3_close(db_);
    db_ = nullptr;
    throw e;
  }
  sqlite3_extended_result_codes(db_, 0);
  sqlite3_busy_timeout(db_, BusyTimeoutMs);
  RegisterClassicFunctions(db_);
  // The catalog (about 6 MB) is read whole by the altitude filter, its pages twice a query:
  // keep all of it in memory rather than read it from the file again each time.
  if (mode == Mode::ReadOnly)
    sqlite3_exec(db_, "PRAGMA cache_size = -16384", nullptr, nullptr, nullptr);
  // A file that is no database shows itself only at its first read: make that happen here.
  try {
    Statement s = prepare(QStringLiteral("SELECT count(*) FROM sqlite_master"));
    s.step();
  } catch (...) {
    sqlite3_close(db_);
    db_ = nullptr;
    throw;
  }
}

Database::~Database() {
  if (db_) sqlite3_close_v2(db_);
}

Statement Database::prepare(const QString& sql) const {
  sqlite3_stmt* stmt = nullptr;
  const QByteArray u = sql.toUtf8();
  if (sqlite3_prepare_v2(db_, u.constData(), u.size(), &stmt, nullptr) != SQLITE_OK)
    throw dbError(db_);
  if (!stmt) throw AppError(ErrNo::Database, QStringLiteral("Empty query text."));
  return Statement(db_, stmt);
}

void Database::exec(const QString& sql) const {
  char* err = nullptr;
  if (sqlite3_exec(db_, sql.toUtf8().constData(), nullptr, nullptr, &err) != SQLITE_OK) {
    const QString msg = err ? QString::fromUtf8(err) : QString::fromUtf8(sqlite3_errmsg(db_));
    sqlite3_free(err);
    throw AppError(ErrNo::Database, msg);
  }
}

qint64 Database::lastInsertRowId() const { return sqlite3_last_insert_rowid(db_); }
int Database::changes() const { return sqlite3_changes(db_); }

void Database::raiseLastError() const { throw dbError(db_); }

bool Database::inTransaction() const { return db_ && sqlite3_get_autocommit(db_) == 0; }

Database::Transaction::Transaction(const Database& db) : db_(db) {
  if (db_.inTransaction()) return;
  db_.exec(QStringLiteral("BEGIN IMMEDIATE"));
  active_ = true;
}

Database::Transaction::~Transaction() {
  // A failed statement may already have ended the transaction.
  if (active_ && db_.inTransaction())
    sqlite3_exec(db_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Database::Transaction::commit() {
  if (!active_) return;
  if (db_.inTransaction()) db_.exec(QStringLiteral("COMMIT"));
  active_ = false;
}

namespace {
QString schemaType(const Database& db, const QString& name) {
  QString n = name;
  if (n.startsWith(QLatin1Char('[')) && n.endsWith(QLatin1Char(']'))) n = n.mid(1, n.size() - 2);
  Statement s =
      db.prepare(QStringLiteral("SELECT type FROM sqlite_master WHERE name = ?1 COLLATE NOCASE"));
  s.bind(1, n);
  return s.step() ? s.value(0).toString() : QString();
}
}  // namespace

bool Database::isTable(const QString& name) const {
  return schemaType(*this, name) == QLatin1String("table");
}

bool Database::isView(const QString& name) const {
  return schemaType(*this, name) == QLatin1String("view");
}

QStringList Database::columnNames(const QString& table) const {
  Statement s = prepare(QStringLiteral("SELECT * FROM %1 LIMIT 0").arg(QuoteIdentifier(table)));
  QStringList names;
  for (int i = 0; i < s.columnCount(); ++i) names << s.columnName(i);
  return names;
}

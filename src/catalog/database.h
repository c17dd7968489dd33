#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

// A prepared statement. Reset it (or let it go) as soon as its rows are read: a statement left
// half-read keeps the file locked against the other windows that write the same document.
class Statement {
 public:
  Statement() = default;
  Statement(sqlite3* db, sqlite3_stmt* stmt) : db_(db), stmt_(stmt) {}
  ~Statement();
  Statement(Statement&& other) noexcept;
  Statement& operator=(Statement&& other) noexcept;
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  bool isValid() const { return stmt_ != nullptr; }
  sqlite3_stmt* handle() const { return stmt_; }

  // Parameters are numbered from 1. A null QVariant binds NULL.
  void bind(int index, const QVariant& value);
  void bindInt64(int index, qint64 value);
  // True while a row is ready; false at the end. Errors raise AppError 3000.
  bool step();
  void reset();

  int columnCount() const;
  QString columnName(int index) const;
  // The column of the current row: qlonglong, double, QString or a null QVariant.
  QVariant value(int index) const;
  qint64 int64Value(int index) const;
  double doubleValue(int index) const;
  bool isNull(int index) const;

 private:
  sqlite3* db_ = nullptr;
  sqlite3_stmt* stmt_ = nullptr;
};

// One connection to a database file. Catalogs are opened read-only; documents and the user's
// own list read-write. The classic query functions (Val, Mid, Instr, Trim, Atn, Sqr, Sin, Cos)
// are available on every connection. Errors raise AppError(3000, SQLite's message).
class Database {
 public:
  enum class Mode { ReadOnly, ReadWrite };

  Database(const QString& path, Mode mode);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  static std::shared_ptr<Database> open(const QString& path, Mode mode) {
    return std::make_shared<Database>(path, mode);
  }

  const QString& path() const { return path_; }
  bool isReadOnly() const { return mode_ == Mode::ReadOnly; }
  sqlite3* handle() const { return db_; }

  Statement prepare(const QString& sql) const;
  // Runs one or more statements that return no rows.
  void exec(const QString& sql) const;
  qint64 lastInsertRowId() const;
  int changes() const;

  // Schema questions: whether a name is a table or a view, and a table's columns in order.
  bool isTable(const QString& name) const;
  bool isView(const QString& name) const;
  QStringList columnNames(const QString& table) const;

  // Raises the connection's last error.
  [[noreturn]] void raiseLastError() const;

  // How long a write waits for another connection on the same file before it gives up.
  static constexpr int BusyTimeoutMs = 3000;

  // Whether a transaction is open on this connection.
  bool inTransaction() const;

  // Groups a batch of writes into one commit, so a batch pays one disk sync instead of one a
  // row. BEGIN IMMEDIATE takes the write lock at once (waiting up to BusyTimeoutMs); what is
  // not committed is rolled back when the object goes. Inside an open transaction it does
  // nothing, so batches nest.
  class Transaction {
   public:
    explicit Transaction(const Database& db);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

   private:
    const Database& db_;
    bool active_ = false;
  };

 private:
  QString path_;
  Mode mode_;
  sqlite3* db_ = nullptr;
};

// Registers the classic query functions on a connection (done by Database itself; exposed for
// connections made elsewhere).
void RegisterClassicFunctions(sqlite3* db);

// The collation of the ObjectNum column of lists and of the user's table: the number is kept
// as typed, but sorts by its leading number ("2" before "12", "12" before "12A"), then by its
// text without regard to case; texts without a number come last. Equal only when the texts
// are equal but for case.
inline constexpr char kObjectNumberCollation[] = "ObjectNumber";
int CompareObjectNumbers(QByteArrayView a, QByteArrayView b);

// A name as a quoted SQL identifier: MapStars to 4_5 gives "MapStars to 4_5".
QString QuoteIdentifier(const QString& name);

#include "catalog/jetsql.h"

#include <QSet>
#include <QStringList>
#include <QVector>

#include "core/apperror.h"

namespace {

enum class Tok { End, Word, Bracket, String, Number, Op, Other };

struct Token {
  Tok kind = Tok::End;
  QString pre;   // whitespace before the token
  QString text;  // the token as written (String: already in single quotes)
  bool is(const char* word) const {
    return kind == Tok::Word && text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
  }
  bool op(const char* o) const { return kind == Tok::Op && text == QLatin1String(o); }
};

bool isWordStart(QChar c) { return c.isLetter() || c == QLatin1Char('_'); }
bool isWordChar(QChar c) {
  return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('$');
}

// The engine reads a statement only up to its first NUL, so a literal holding one (pasted
// into a search box, say) is spelt as its UTF-8 bytes in hex: one term however many NULs.
QString withoutNul(const QString& literal) {
  if (!literal.contains(QChar())) return literal;
  const QString body =
      literal.mid(1, literal.size() - 2).replace(QStringLiteral("''"), QStringLiteral("'"));
  return QStringLiteral("CAST(X'%1' AS TEXT)").arg(QString::fromLatin1(body.toUtf8().toHex()));
}

QVector<Token> tokenize(const QString& s) {
  QVector<Token> out;
  int i = 0;
  const int n = s.size();
  while (true) {
    Token t;
    const int wsStart = i;
    while (i < n && s[i].isSpace()) ++i;
    t.pre = s.mid(wsStart, i - wsStart);
    if (i >= n) {
      t.kind = Tok::End;
      out.push_back(t);
      break;
    }
    const QChar c = s[i];
    const int start = i;
    if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
      // A literal; the doubled quote stands for itself. Double-quoted texts become
      // single-quoted ones.
      QString body;
      bool closed = false;
      ++i;
      while (i < n) {
        if (s[i] == c) {
          if (i + 1 < n && s[i + 1] == c) {
            body += c;
            i += 2;
            continue;
          }
          ++i;
          closed = true;
          break;
        }
        body += s[i++];
      }
      body.replace(QLatin1Char('\''), QStringLiteral("''"));
      t.kind =
          closed ? Tok::String : Tok::Other;  // an open literal is left for the engine to refuse
      t.text = closed ? QLatin1Char('\'') + body + QLatin1Char('\'') : s.mid(start);
    } else if (c == QLatin1Char('[')) {
      while (i < n && s[i] != QLatin1Char(']')) ++i;
      if (i < n) ++i;
      t.kind = Tok::Bracket;
      t.text = s.mid(start, i - start);
    } else if (c.isDigit() || (c == QLatin1Char('.') && i + 1 < n && s[i + 1].isDigit())) {
      while (i < n && s[i].isDigit()) ++i;
      if (i < n && s[i] == QLatin1Char('.')) {
        ++i;
        while (i < n && s[i].isDigit()) ++i;
      }
      if (i < n && (s[i] == QLatin1Char('e') || s[i] == QLatin1Char('E'))) {
        int j = i + 1;
        if (j < n && (s[j] == QLatin1Char('+') || s[j] == QLatin1Char('-'))) ++j;
        if (j < n && s[j].isDigit()) {
          i = j;
          while (i < n && s[i].isDigit()) ++i;
        }
      }
      t.kind = Tok::Number;
      t.text = s.mid(start, i - start);
    } else if (isWordStart(c)) {
      while (i < n && isWordChar(s[i])) ++i;
      t.kind = Tok::Word;
      t.text = s.mid(start, i - start);
    } else {
      static const char* const twoChar[] = {"<>", "<=", ">=", "!=", "==", "||"};
      t.kind = Tok::Op;
      t.text = QString(c);
      ++i;
      for (const char* op : twoChar) {
        if (c == QLatin1Char(op[0]) && i < n && s[i] == QLatin1Char(op[1])) {
          t.text += s[i++];
          break;
        }
      }
    }
    out.push_back(t);
  }
  return out;
}

const QSet<QString>& clauseWords() {
  static const QSet<QString> words = {
      QStringLiteral("select"), QStringLiteral("distinct"), QStringLiteral("distinctrow"),
      QStringLiteral("from"),   QStringLiteral("where"),    QStringLiteral("group"),
      QStringLiteral("order"),  QStringLiteral("by"),       QStringLiteral("having"),
      QStringLiteral("asc"),    QStringLiteral("desc"),     QStringLiteral("as"),
      QStringLiteral("on"),     QStringLiteral("join"),     QStringLiteral("inner"),
      QStringLiteral("left"),   QStringLiteral("right"),    QStringLiteral("outer"),
      QStringLiteral("cross"),  QStringLiteral("union"),    QStringLiteral("all"),
      QStringLiteral("limit"),  QStringLiteral("offset"),   QStringLiteral("into"),
      QStringLiteral("values"), QStringLiteral("set"),      QStringLiteral("update"),
      QStringLiteral("delete"), QStringLiteral("insert"),   QStringLiteral("top"),
      QStringLiteral("then"),   QStringLiteral("else"),     QStringLiteral("when"),
      QStringLiteral("end"),    QStringLiteral("escape"),   QStringLiteral("collate")};
  return words;
}

bool isClauseWord(const Token& t) {
  return t.kind == Tok::Word && clauseWords().contains(t.text.toLower());
}

struct Expr {
  QString text;  // with the leading whitespace of its first token
  bool consumed = false;
  bool stringLiteral = false;
  bool numeric = false;
  double number = 0;
  QStringList concatParts;  // for a & b & ...: the operands, bare

  QString bare() const { return text.trimmed(); }
};

QString leadingSpace(const QString& s) {
  int i = 0;
  while (i < s.size() && s[i].isSpace()) ++i;
  return s.left(i);
}

// The functions a shared term may call: they have no side effect and raise no error, so
// working them out once for every row, even a row an earlier condition drops, changes
// nothing but the time it takes.
bool isQuietFunction(const QString& name) {
  static const QSet<QString> names = {QStringLiteral("val"), QStringLiteral("trim"),
                                      QStringLiteral("atn"), QStringLiteral("sin"),
                                      QStringLiteral("cos"), QStringLiteral("ifnull"),
                                      QStringLiteral("min"), QStringLiteral("max")};
  return names.contains(name.toLower());
}

// Words that read as a column to the parser but are none; a condition naming one is not
// shared (its columns could not be listed).
bool isKeywordLike(const QString& word) {
  static const QSet<QString> words = {QStringLiteral("null"),
                                      QStringLiteral("case"),
                                      QStringLiteral("exists"),
                                      QStringLiteral("cast"),
                                      QStringLiteral("current_date"),
                                      QStringLiteral("current_time"),
                                      QStringLiteral("current_timestamp"),
                                      QStringLiteral("raise"),
                                      QStringLiteral("rowid"),
                                      QStringLiteral("oid"),
                                      QStringLiteral("_rowid_")};
  return words.contains(word.toLower());
}

class Translator {
 public:
  Translator(QVector<Token> tokens, bool shareRepeatedTerms)
      : t_(std::move(tokens)), share_(shareRepeatedTerms) {}

  // Each bracket, NOT or sign opens a level of the reader's own recursion. Deeper nesting than
  // this is refused with a message rather than followed until the stack runs out; the
  // program's own texts stay far below it (the altitude filter has about ten levels).
  static constexpr int kMaxDepth = 200;

  // A run of clauses: expressions separated by clause words, commas and the like.
  QString sequence(bool untilCloseParen) {
    QString out;
    while (cur().kind != Tok::End) {
      const Token& k = cur();
      if (untilCloseParen && k.op(")")) break;
      if (isClauseWord(k) || k.op(",") || k.op(";") || k.op(")") || k.op("*")) {
        out += k.pre + k.text;
        ++p_;
        if (k.is("select")) ++terms_.unsafe;  // a subquery is never shared
        // Only the first WHERE of the query, right behind FROM and one table's name.
        if (share_ && !untilCloseParen && k.is("from") && table_.isEmpty() &&
            (cur().kind == Tok::Word || cur().kind == Tok::Bracket) && peek().is("where"))
          table_ = cur().text;
        if (share_ && !untilCloseParen && k.is("where") && !table_.isEmpty()) {
          out += sharedCondition();
          share_ = false;
        }
        continue;
      }
      Expr e = orExpr();
      if (!e.consumed) {
        out += k.pre + k.text;
        ++p_;
        continue;
      }
      out += e.text;
    }
    return out;
  }

  const Token& cur() const { return t_[p_]; }
  const Token& peek(int k = 1) const { return t_[qMin(p_ + k, t_.size() - 1)]; }

 private:
  // One level of operators that keep their operands' text as it stands, left to right.
  template <typename Match>
  Expr leftAssociative(Expr (Translator::*next)(), Match matches) {
    Expr l = (this->*next)();
    while (l.consumed && matches(cur())) {
      const Token o = cur();
      ++p_;
      Expr r = (this->*next)();
      l = plain(l.text + o.pre + o.text + r.text);
    }
    return l;
  }

  Expr orExpr() {
    return leftAssociative(&Translator::andExpr,
                           [](const Token& t) { return t.is("or") || t.is("xor"); });
  }

  Expr andExpr() {
    return leftAssociative(&Translator::notExpr, [](const Token& t) { return t.is("and"); });
  }

  // Counts a level while it lives; too many raise "Query is too complex.".
  struct Level {
    explicit Level(int& depth) : depth_(depth) {
      if (++depth_ > kMaxDepth) {
        --depth_;
        throw AppError::of(ErrNo::QueryTooComplex);
      }
    }
    ~Level() { --depth_; }
    int& depth_;
  };

  Expr notExpr() {
    const Level level(depth_);
    if (cur().is("not")) {
      const Token o = cur();
      ++p_;
      Expr r = notExpr();
      return plain(o.pre + o.text + r.text);
    }
    return compareExpr();
  }

  static bool isCompareOp(const Token& k) {
    return k.op("=") || k.op("<>") || k.op("<") || k.op(">") || k.op("<=") || k.op(">=") ||
           k.op("!=") || k.op("==");
  }

  Expr compareExpr() {
    Expr l = concatExpr();
    if (!l.consumed) return l;
    for (;;) {
      const Token& k = cur();
      if (isCompareOp(k)) {
        const Token o = k;
        ++p_;
        Expr r = concatExpr();
        QString lt = l.text, rt = r.text;
        if (l.stringLiteral) lt += QStringLiteral(" COLLATE NOCASE");
        if (r.stringLiteral) rt += QStringLiteral(" COLLATE NOCASE");
        l = plain(lt + o.pre + o.text + rt);
        continue;
      }
      // [NOT] BETWEEN, [NOT] LIKE, [NOT] IN
      int at = p_;
      QString notText;
      if (k.is("not") && (peek().is("between") || peek().is("like") || peek().is("in"))) {
        notText = k.pre + k.text;
        ++at;
      }
      const Token& w = t_[at];
      if (w.is("between")) {
        p_ = at + 1;
        Expr lo = concatExpr();
        QString andText = QStringLiteral(" AND");
        if (cur().is("and")) {
          andText = cur().pre + cur().text;
          ++p_;
        }
        Expr hi = concatExpr();
        QString loText, hiText;
        if (lo.numeric && hi.numeric) {
          const bool swap = lo.number > hi.number;
          loText = leadingSpace(lo.text) + (swap ? hi : lo).bare();
          hiText = leadingSpace(hi.text) + (swap ? lo : hi).bare();
        } else {
          loText = leadingSpace(lo.text) + QStringLiteral("min(%1, %2)").arg(lo.bare(), hi.bare());
          hiText = leadingSpace(hi.text) + QStringLiteral("max(%1, %2)").arg(lo.bare(), hi.bare());
        }
        l = plain(l.text + notText + w.pre + w.text + loText + andText + hiText);
        continue;
      }
      if (w.is("like")) {
        p_ = at + 1;
        Expr r = concatExpr();
        QString rt;
        bool escape = false;
        if (r.stringLiteral) {
          const QString pat = LikePatternToSqlite(r.bare());
          escape = pat.contains(QLatin1Char('\\'));
          rt = leadingSpace(r.text) + pat;
        } else {
          rt = leadingSpace(r.text) + QStringLiteral("likepattern(%1)").arg(r.bare());
          escape = true;
        }
        if (escape) rt += QStringLiteral(" ESCAPE '\\'");
        l = plain(l.text + notText + w.pre + w.text + rt);
        continue;
      }
      if (w.is("in")) {
        p_ = at + 1;
        QString inner;
        if (cur().op("(")) {
          const Token open = cur();
          ++p_;
          inner = open.pre + open.text + sequence(true);
          if (cur().op(")")) {
            inner += cur().pre + cur().text;
            ++p_;
          }
        }
        l = plain(l.text + notText + w.pre + w.text + inner);
        continue;
      }
      if (k.is("is")) {
        QString s = k.pre + k.text;
        ++p_;
        if (cur().is("not")) {
          s += cur().pre + cur().text;
          ++p_;
        }
        Expr r = concatExpr();
        l = plain(l.text + s + r.text);
        continue;
      }
      return l;
    }
  }

  Expr concatExpr() {
    Expr first = addExpr();
    if (!first.consumed || !cur().op("&")) return first;
    QVector<Expr> parts{first};
    while (cur().op("&")) {
      ++p_;
      parts.push_back(addExpr());
    }
    QStringList pieces, bare;
    for (const Expr& e : parts) {
      pieces << (e.stringLiteral ? e.bare() : QStringLiteral("ifnull(%1, '')").arg(e.bare()));
      bare << e.bare();
    }
    Expr e = plain(leadingSpace(first.text) + QLatin1Char('(') +
                   pieces.join(QStringLiteral(" || ")) + QLatin1Char(')'));
    e.concatParts = bare;
    return e;
  }

  Expr addExpr() {
    return leftAssociative(&Translator::modExpr,
                           [](const Token& t) { return t.op("+") || t.op("-"); });
  }

  Expr modExpr() {
    Expr l = mulExpr();
    while (l.consumed && cur().is("mod")) {
      const Token o = cur();
      ++p_;
      Expr r = mulExpr();
      l = plain(leadingSpace(l.text) + QLatin1Char('(') + l.bare() + QStringLiteral(") %") +
                leadingSpace(r.text) + QLatin1Char('(') + r.bare() + QLatin1Char(')'));
      Q_UNUSED(o);
    }
    return l;
  }

  Expr mulExpr() {
    return leftAssociative(&Translator::unaryExpr,
                           [](const Token& t) { return t.op("*") || t.op("/") || t.op("\\"); });
  }

  Expr unaryExpr() {
    const Level level(depth_);
    if (cur().op("-") || cur().op("+")) {
      const Token o = cur();
      ++p_;
      Expr r = unaryExpr();
      Expr e = plain(o.pre + o.text + r.text);
      if (r.numeric && !r.text.contains(QLatin1Char('('))) {
        e.numeric = true;
        e.number = o.op("-") ? -r.number : r.number;
      }
      return e;
    }
    return powExpr();
  }

  Expr powExpr() {
    Expr l = primary();
    while (l.consumed && cur().op("^")) {
      ++p_;
      Expr r = unaryExpr();
      l = plain(leadingSpace(l.text) + QStringLiteral("pow(%1, %2)").arg(l.bare(), r.bare()));
    }
    return l;
  }

  Expr primary() {
    const Token k = cur();
    Expr e;
    switch (k.kind) {
      case Tok::End: return e;
      case Tok::String:
        ++p_;
        e = plain(k.pre + withoutNul(k.text));
        e.stringLiteral = true;
        return e;
      case Tok::Number:
        ++p_;
        e = plain(k.pre + k.text);
        e.numeric = true;
        e.number = k.text.toDouble();
        return e;
      case Tok::Bracket: ++p_; return column(dotted(plain(k.pre + k.text)));
      case Tok::Word: {
        if (isClauseWord(k) || k.is("and") || k.is("or") || k.is("not")) return e;
        ++p_;
        if (cur().op("(")) {
          // A function call.
          const Token open = cur();
          ++p_;
          ++terms_.calls;
          if (!isQuietFunction(k.text)) ++terms_.unsafe;
          QString args;
          if (k.is("val") && !cur().op(")")) {
            // Val of a concatenation reads the pieces as one text, without building it.
            Expr arg = orExpr();
            if (arg.consumed && !arg.concatParts.isEmpty() && cur().op(")"))
              args = arg.concatParts.join(QStringLiteral(", "));
            else args = arg.text;
          }
          args += sequence(true);
          QString close;
          if (cur().op(")")) {
            close = cur().pre + cur().text;
            ++p_;
          }
          return plain(k.pre + k.text + open.pre + open.text + args + close);
        }
        if (k.is("true")) return constant(k.pre + QStringLiteral("1"), 1);
        if (k.is("false")) return constant(k.pre + QStringLiteral("0"), 0);
        return column(dotted(plain(k.pre + k.text)));
      }
      case Tok::Op:
        if (k.op("(")) {
          ++p_;
          const Terms before = terms_;
          const int parent = group_;
          if (collecting_) {
            group_ = int(groups_.size());
            groups_.push_back({QString(), parent, 0, 0, 0});
          }
          QString inner = sequence(true);
          QString close;
          if (cur().op(")")) {
            close = cur().pre + cur().text;
            ++p_;
          }
          const QString text = k.text + inner + close;
          if (collecting_) {
            Group& g = groups_[group_];
            g.text = text.trimmed();
            g.refs = terms_.refs - before.refs;
            g.calls = terms_.calls - before.calls;
            g.unsafe = terms_.unsafe - before.unsafe;
            group_ = parent;
          }
          const auto alias = shared_.constFind(text.trimmed());
          if (alias != shared_.constEnd()) {
            // Worked out once a row, in the subquery: its columns need no listing here.
            terms_ = before;
            columns_.resize(before.columns);
            return plain(k.pre + *alias);
          }
          return plain(k.pre + text);
        }
        if (k.op("*")) {
          ++p_;
          return plain(k.pre + k.text);
        }
        return e;
      default: return e;
    }
  }

  // table.column, [table].[column], table.*
  Expr dotted(Expr e) {
    while (cur().op(".") && cur().pre.isEmpty()) {
      const Token dot = cur();
      const Token& next = peek();
      if (next.kind == Tok::Word || next.kind == Tok::Bracket || next.op("*")) {
        e.text += dot.text + next.pre + next.text;
        p_ += 2;
      } else {
        break;
      }
    }
    return e;
  }

  static Expr plain(const QString& text) {
    Expr e;
    e.text = text;
    e.consumed = true;
    return e;
  }

  // A column reference: counted, and noted for the column list of a shared condition.
  Expr column(Expr e) {
    if (!share_) return e;
    ++terms_.refs;
    const QString name = e.bare();
    if (name.contains(QLatin1Char('.')) || isKeywordLike(name)) ++terms_.unlisted;
    columns_.push_back(name);
    terms_.columns = int(columns_.size());
    return e;
  }

  // The condition after WHERE of a query over one table. A bracketed term it repeats (the
  // altitude filter writes the sine of the altitude three times) is worked out once a row: the
  // condition moves into a subquery over the same table that gives each such term a name,
  // and the rows it keeps are those the condition as written keeps.
  QString sharedCondition() {
    const int start = p_;
    collecting_ = true;
    groups_.clear();
    const Expr written = orExpr();
    collecting_ = false;
    const int end = p_;
    if (!written.consumed) return QString();

    // Terms written at least twice, with columns and function calls in them, none that could
    // raise an error or have a side effect, and not inside another such term.
    QHash<QString, int> count;
    for (const Group& g : groups_)
      if (g.refs > 0 && g.calls > 0 && g.unsafe == 0) ++count[g.text];
    QStringList chosen;
    for (const Group& g : groups_) {
      if (count.value(g.text) < 2 || chosen.contains(g.text)) continue;
      bool inside = false;
      for (int p = g.parent; p >= 0 && !inside; p = groups_[p].parent)
        inside = count.value(groups_[p].text) >= 2;
      if (!inside) chosen << g.text;
    }
    // A term chosen once may still sit inside another occurrence of a chosen term.
    for (const Group& g : groups_) {
      for (int p = g.parent; p >= 0; p = groups_[p].parent)
        if (chosen.contains(groups_[p].text)) chosen.removeAll(g.text);
    }
    if (chosen.isEmpty()) return written.text;

    for (int i = 0; i < chosen.size(); ++i)
      shared_.insert(chosen[i], QStringLiteral("shared_%1").arg(i + 1));
    p_ = start;
    terms_ = Terms{};
    columns_.clear();
    const Expr rewritten = orExpr();
    const bool listable = p_ == end && terms_.unlisted == 0;
    QStringList listed;
    for (const QString& c : columns_)
      if (!listed.contains(c, Qt::CaseInsensitive)) listed << c;
    shared_.clear();
    p_ = end;
    if (!listable) return written.text;

    QStringList select{QStringLiteral("rowid AS shared_rowid")};
    select << listed;
    for (int i = 0; i < chosen.size(); ++i)
      select << QStringLiteral("%1 AS shared_%2").arg(chosen[i]).arg(i + 1);
    // LIMIT keeps the engine from folding the subquery back into the condition.
    return leadingSpace(written.text) +
           QStringLiteral(
               "rowid IN (SELECT shared_rowid FROM (SELECT %1 FROM %2 LIMIT -1) WHERE %3)")
               .arg(select.join(QStringLiteral(", ")), table_, rewritten.bare());
  }

  static Expr constant(const QString& text, double v) {
    Expr e = plain(text);
    e.numeric = true;
    e.number = v;
    return e;
  }

  QVector<Token> t_;
  int p_ = 0;
  int depth_ = 0;

  // Sharing repeated terms (sharedCondition).
  struct Terms {
    int refs = 0, calls = 0, unsafe = 0, unlisted = 0, columns = 0;
  };
  struct Group {
    QString text;
    int parent, refs, calls, unsafe;
  };
  bool share_ = false;
  QString table_;                   // the table after FROM
  bool collecting_ = false;         // noting bracketed terms
  Terms terms_;                     // running counts
  QVector<Group> groups_;           // the bracketed terms in the order they close
  int group_ = -1;                  // the term being read
  QStringList columns_;             // column references, in order
  QHash<QString, QString> shared_;  // term -> its name in the subquery
};

}  // namespace

QString LikePatternToSqlite(const QString& pattern) {
  QString out;
  out.reserve(pattern.size() + 4);
  for (QChar c : pattern) {
    if (c == QLatin1Char('*')) out += QLatin1Char('%');
    else if (c == QLatin1Char('?')) out += QLatin1Char('_');
    else if (c == QLatin1Char('%') || c == QLatin1Char('_') || c == QLatin1Char('\\')) {
      out += QLatin1Char('\\');
      out += c;
    } else {
      out += c;
    }
  }
  return out;
}

QString TranslateQuery(const QString& classicText, bool shareRepeatedTerms) {
  Translator tr(tokenize(classicText), shareRepeatedTerms);
  QString out = tr.sequence(false);
  // Drop a closing ";" and the blanks around it.
  QString trimmed = out;
  while (!trimmed.isEmpty() && trimmed.back().isSpace()) trimmed.chop(1);
  if (trimmed.endsWith(QLatin1Char(';'))) {
    trimmed.chop(1);
    while (!trimmed.isEmpty() && trimmed.back().isSpace()) trimmed.chop(1);
    out = trimmed;
  }
  return out;
}

bool IsQueryText(const QString& recordSource) {
  const QString t = recordSource.trimmed();
  if (!t.startsWith(QLatin1String("select"), Qt::CaseInsensitive)) return false;
  return t.size() > 6 && (t[6].isSpace() || t[6] == QLatin1Char('*'));
}

std::optional<SimpleSelect> ParseSimpleSelect(const QString& sqliteText) {
  const QVector<Token> t = tokenize(sqliteText);
  if (t.isEmpty() || !t[0].is("select")) return std::nullopt;
  // Top-level positions of the clause words.
  int from = -1, where = -1, order = -1;
  int depth = 0;
  for (int i = 1; i < t.size() && t[i].kind != Tok::End; ++i) {
    const Token& k = t[i];
    if (k.op("(")) ++depth;
    else if (k.op(")")) --depth;
    if (depth != 0) continue;
    if (i == 1 && (k.is("distinct") || k.is("distinctrow") || k.is("top") || k.is("all")))
      return std::nullopt;
    if (k.is("group") || k.is("having") || k.is("union") || k.is("join") || k.is("limit") ||
        k.is("except") || k.is("intersect"))
      return std::nullopt;
    if (k.is("from") && from < 0) from = i;
    else if (k.is("where") && where < 0 && from >= 0) where = i;
    else if (k.is("order") && t[i + 1].is("by") && order < 0) order = i;
  }
  if (from < 0) return std::nullopt;
  const Token& name = t[from + 1];
  if (name.kind != Tok::Word && name.kind != Tok::Bracket && name.kind != Tok::String)
    return std::nullopt;
  // Nothing may stand between the table's name and WHERE / ORDER BY / the end.
  const int afterName = from + 2;
  const int next = where >= 0 ? where : (order >= 0 ? order : -1);
  if (next >= 0 ? next != afterName : t[afterName].kind != Tok::End) {
    if (!(next < 0 && t[afterName].op(";"))) return std::nullopt;
  }
  if (where >= 0 && order >= 0 && order < where) return std::nullopt;

  auto join = [&](int a, int b) {
    QString s;
    for (int i = a; i < b && t[i].kind != Tok::End; ++i) {
      if (t[i].op(";") && (i + 1 >= t.size() || t[i + 1].kind == Tok::End)) break;
      s += (i == a ? QString() : t[i].pre) + t[i].text;
    }
    return s.trimmed();
  };
  const int end = t.size() - 1;
  SimpleSelect s;
  s.columns = join(1, from);
  QString n = name.text;
  if (name.kind == Tok::Bracket || name.kind == Tok::String) n = n.mid(1, n.size() - 2);
  if (name.kind == Tok::String) n.replace(QStringLiteral("''"), QStringLiteral("'"));
  s.table = n;
  if (where >= 0) s.where = join(where + 1, order >= 0 ? order : end);
  if (order >= 0) s.orderBy = join(order + 2, end);
  return s;
}

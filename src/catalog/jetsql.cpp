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
bool isWordChar(QChar c) { return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('$'); }

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
      t.kind = closed ? Tok::String : Tok::Other;  // an open literal is left for the engine to refuse
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

  QString bare() const { return text.trimmed(); }
};

QString leadingSpace(const QString& s) {
  int i = 0;
  while (i < s.size() && s[i].isSpace()) ++i;
  return s.left(i);
}


class Translator {
 public:
  explicit Translator(QVector<Token> tokens) : t_(std::move(tokens)) {}

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
    return leftAssociative(&Translator::notExpr,
                           [](const Token& t) { return t.is("and"); });
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
    QStringList pieces;
    for (const Expr& e : parts)
      pieces << (e.stringLiteral ? e.bare() : QStringLiteral("ifnull(%1, '')").arg(e.bare()));
    return plain(leadingSpace(first.text) + QLatin1Char('(') +
                 pieces.join(QStringLiteral(" || ")) + QLatin1Char(')'));
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
      case Tok::End:
        return e;
      case Tok::String:
        ++p_;
        e = plain(k.pre + k.text);
        e.stringLiteral = true;
        return e;
      case Tok::Number:
        ++p_;
        e = plain(k.pre + k.text);
        e.numeric = true;
        e.number = k.text.toDouble();
        return e;
      case Tok::Bracket:
        ++p_;
        return dotted(plain(k.pre + k.text));
      case Tok::Word: {
        if (isClauseWord(k) || k.is("and") || k.is("or") || k.is("not")) return e;
        ++p_;
        if (cur().op("(")) {
          // A function call.
          const Token open = cur();
          ++p_;
          QString args = sequence(true);
          QString close;
          if (cur().op(")")) {
            close = cur().pre + cur().text;
            ++p_;
          }
          return plain(k.pre + k.text + open.pre + open.text + args + close);
        }
        if (k.is("true")) return constant(k.pre + QStringLiteral("1"), 1);
        if (k.is("false")) return constant(k.pre + QStringLiteral("0"), 0);
        return dotted(plain(k.pre + k.text));
      }
      case Tok::Op:
        if (k.op("(")) {
          ++p_;
          QString inner = sequence(true);
          QString close;
          if (cur().op(")")) {
            close = cur().pre + cur().text;
            ++p_;
          }
          return plain(k.pre + k.text + inner + close);
        }
        if (k.op("*")) {
          ++p_;
          return plain(k.pre + k.text);
        }
        return e;
      default:
        return e;
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

  static Expr constant(const QString& text, double v) {
    Expr e = plain(text);
    e.numeric = true;
    e.number = v;
    return e;
  }

  QVector<Token> t_;
  int p_ = 0;
  int depth_ = 0;
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

QString TranslateQuery(const QString& classicText) {
  Translator tr(tokenize(classicText));
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

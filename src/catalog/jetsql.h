#pragma once

#include <QString>
#include <optional>

// The program builds its queries in the classic query dialect (string concatenation with &,
// True and False, Like with * and ?, BETWEEN whose bounds come in either order). This is the
// one place that turns such a text into SQLite's.
//
// - a & b          -> (ifnull(a, '') || ifnull(b, '')): Null counts as an empty text, and the
//                     operands keep the precedence & had (below + and -, above comparisons)
// - True / False   -> 1 / 0 (outside literals and bracketed names)
// - "text"         -> 'text'
// - x Like 'a*b?'  -> x Like 'a%b_' (the engine's own % and _ are escaped); case-insensitive
// - x BETWEEN a AND b -> constant bounds put in order, others as min(a, b) AND max(a, b)
// - a comparison with a text literal compares without regard to case
// - a Mod b        -> a % b;  a ^ b -> pow(a, b)
// - Val(a & b)     -> val(a, b): the leading number of the joined texts, without joining them
// - a trailing ";" is dropped
// With shareRepeatedTerms, for a SELECT over one table (not a view), a WHERE condition that
// repeats a bracketed term is worked out with that term computed once a row (see
// sharedCondition in jetsql.cpp); it keeps exactly the rows the condition as written keeps.
// A text nested deeper than the reader follows (some hundred brackets, NOTs or signs) raises
// error 3360 "Query is too complex."; any other text the engine cannot read fails when it is
// prepared.
QString TranslateQuery(const QString& classicText, bool shareRepeatedTerms = false);

// A Like pattern of the classic dialect for SQLite's LIKE ... ESCAPE '\': * and ? become % and
// _, and SQLite's own wildcards are escaped.
QString LikePatternToSqlite(const QString& pattern);

// A query over one table, as the recordset needs it to keep row ids: the parts of an SQLite
// SELECT text, split at the top level. Empty optional for anything else (joins, DISTINCT,
// GROUP BY, aliases, compound queries).
struct SimpleSelect {
  QString columns;  // the select list as written
  QString table;    // the table's name, unquoted
  QString where;    // the condition after WHERE, or empty
  QString orderBy;  // the terms after ORDER BY, or empty
};
std::optional<SimpleSelect> ParseSimpleSelect(const QString& sqliteText);

// Whether a record source is a full query text rather than a table or view name.
bool IsQueryText(const QString& recordSource);

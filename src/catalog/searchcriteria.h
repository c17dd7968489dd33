#pragma once

#include <QString>

// The two options of a page's "Column to Search" frame.
enum class SearchOption { Number, Name };

// The criteria text of a catalog page's search, by query set number. The text is placed as
// typed, its quotes written twice, so that it always stands as one literal of the criteria.
QString SearchCriteria(int querySet, SearchOption option, const QString& text);

// The grid column made current after a find.
int ColumnAfterFind(int querySet, SearchOption option);

// SearchUser: the field word stored in UserSearchField ("ObjectNum" or "Name") and the
// criteria text for it.
QString UserSearchFieldOf(SearchOption option);
SearchOption UserSearchOptionOf(const QString& userSearchField);
QString SearchUserCriteria(const QString& userSearchField, const QString& text);

QString NotFoundMessage();  // "Not Found." (catalog pages; empty title)

#pragma once

#include <QString>
#include <QStringList>

namespace dao {

// The words of a text, folded: what stands between anything else than letters and digits.
QStringList WordsOf(const QString& text);

// What the log's index has in the place of a status's text, and of a record's kind. They begin with
// characters that no word has.
QString WordOfStatus(const QString& code);
QString WordOfKind(int kind);

// What a record of the log is found by in its index, as the function kyn_event_words of the schema: the words
// of its parties and of its text, its kind, and the code of a status in the place of its text.
QStringList EventWords(int kind, const QString& content, const QStringList& parties);

} // namespace dao

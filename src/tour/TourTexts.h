#pragma once

#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>

struct IStringSource;

// What "{name}" stands for in a script: a text of the catalogue, in the language of the user, or a word that
// the tour was given, like the port's name. A text's places take values, "{address-in-regroup | Unit20}",
// which may hold names themselves; a place without a value becomes "*", which matches anything.
class TourTexts {
public:
    TourTexts(const IStringSource& strings, const QMap<QString, QString>& words);

    // Names a text of the catalogue. Raises Error for a name that is taken or an id without a text.
    void Name(const QString& name, int id);
    // Raises Error for an unknown name or a missing brace.
    QString Expand(QString text) const;

private:
    QString Value(const QString& name, const QStringList& values) const;

    const IStringSource& m_strings;
    QMap<QString, QString> m_words;
    QHash<QString, int> m_ids;
};

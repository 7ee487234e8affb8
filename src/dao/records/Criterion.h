#pragma once

#include <QList>
#include <QString>
#include <QVariant>

namespace dao {

// One comparison of a criterion text.
struct Comparison {
    QString field;
    QString comparator; // = <> < > <= >=
    QVariant value;     // qlonglong, double or QString
};

// Takes a criterion apart (see Recordset::FindFirst): field, comparator and a number or 'text', joined by
// "and". Its values become bound parameters, so that no criterion can smuggle SQL in. Kind::BadCriterion.
QList<Comparison> ParseCriterion(const QString& criterion);

} // namespace dao

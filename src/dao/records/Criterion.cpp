#include "dao/records/Criterion.h"
#include "dao/base/Error.h"
#include <QRegularExpression>

namespace dao {

namespace {

QVariant ValueOf(const QString& literal)
{
    if (literal.startsWith('\''))
        return literal.mid(1, literal.size() - 2).replace("''", "'");
    bool whole = false;
    const qlonglong number = literal.toLongLong(&whole);
    return whole ? QVariant(number) : QVariant(literal.toDouble());
}

} // namespace

QList<Comparison> ParseCriterion(const QString& criterion)
{
    static const QRegularExpression comparison(
        R"re(\s*(?:"(?<quoted>[^"]+)"|\[(?<bracketed>[^\]]+)\]|(?<plain>[A-Za-z_]\w*)))re"
        R"re(\s*(?<op><>|<=|>=|=|<|>)\s*(?<value>'(?:[^']|'')*'|-?\d+(?:\.\d+)?)\s*)re",
        QRegularExpression::UseUnicodePropertiesOption);
    static const QRegularExpression conjunction(R"(and\b)", QRegularExpression::CaseInsensitiveOption);

    QList<Comparison> comparisons;
    qsizetype position = 0;
    while (true) {
        const auto match = comparison.match(criterion, position, QRegularExpression::NormalMatch,
                                            QRegularExpression::AnchorAtOffsetMatchOption);
        if (!match.hasMatch())
            throw Error(Kind::BadCriterion, {criterion});
        const QString field =
            match.captured("quoted") + match.captured("bracketed") + match.captured("plain");
        comparisons.append({field, match.captured("op"), ValueOf(match.captured("value"))});
        position = match.capturedEnd();
        if (position == criterion.size())
            return comparisons;
        const auto joint = conjunction.match(criterion, position, QRegularExpression::NormalMatch,
                                             QRegularExpression::AnchorAtOffsetMatchOption);
        if (!joint.hasMatch())
            throw Error(Kind::BadCriterion, {criterion});
        position = joint.capturedEnd();
    }
}

} // namespace dao

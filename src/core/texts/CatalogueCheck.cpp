#include "core/texts/CatalogueCheck.h"

#include "core/texts/StringSourceImpl.h"

#include <QRegularExpression>
#include <algorithm>

namespace {

// What a translation has to keep, in any order.
QStringList PartsOf(const QString& text, const QRegularExpression& part)
{
    QStringList parts;
    for (auto found = part.globalMatch(text); found.hasNext();)
        parts.append(found.next().captured());
    std::sort(parts.begin(), parts.end());
    return parts;
}

QString EndsOf(const QString& text)
{
    static const QRegularExpression ends(QStringLiteral("^(\\s*).*?(\\s*)$"),
                                         QRegularExpression::DotMatchesEverythingOption);
    const auto found = ends.match(text);
    return found.captured(1) + u'|' + found.captured(2);
}

// Nothing when the translation can stand for the text.
QString Difference(const QString& text, const QString& translation)
{
    static const QRegularExpression placeholder(QStringLiteral("#\\d\\d"));
    static const QRegularExpression escape(QStringLiteral("\\\\."));
    if (translation.isEmpty() != text.isEmpty())
        return translation.isEmpty() ? QStringLiteral("is empty") : QStringLiteral("has to be empty");
    if (PartsOf(text, placeholder) != PartsOf(translation, placeholder))
        return QStringLiteral("needs the placeholders %1, each as often as in \"%2\"")
            .arg(PartsOf(text, placeholder).join(u' '), text);
    if (PartsOf(text, escape) != PartsOf(translation, escape))
        return QStringLiteral("needs the same escapes as \"%1\"").arg(text);
    if (EndsOf(text) != EndsOf(translation))
        return QStringLiteral("needs the same blanks at its ends as \"%1\"").arg(text);
    return {};
}

} // namespace

QStringList ProblemsOf(const Catalogue& satellite)
{
    const Catalogue builtIn = CStringSourceImpl::BuiltIn();
    QList<int> ids = (builtIn.keys() + satellite.keys());
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());

    QStringList problems;
    for (const int id : ids) {
        QString problem;
        if (!builtIn.contains(id))
            problem = QStringLiteral("is not a text of this program");
        else if (!CStringSourceImpl::IsTranslated(id))
            problem = satellite.contains(id) ? QStringLiteral("must not be translated") : QString();
        else if (!satellite.contains(id))
            problem = QStringLiteral("is missing: \"%1\"").arg(builtIn[id]);
        else
            problem = Difference(builtIn[id], satellite[id]);
        if (!problem.isEmpty())
            problems.append(QStringLiteral("%1 %2").arg(id).arg(problem));
    }
    return problems;
}

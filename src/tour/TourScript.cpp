#include "tour/TourScript.h"

#include "core/texts/Errors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QKeySequence>
#include <algorithm>

namespace {

[[noreturn]] void Fail(const QString& reason)
{
    throw Error(ErrorCode::General, reason);
}

void CheckKey(const QString& name)
{
    const QKeySequence keys = QKeySequence::fromString(name);
    if (keys.count() != 1 || keys[0].key() == Qt::Key_unknown)
        Fail(QStringLiteral("%1 is not a key").arg(name));
}

QString Opposite(const QString& seen, const QStringList& values)
{
    return seen.isEmpty() ? values.join(QLatin1Char(' ')) : QString();
}

} // namespace

TourScript::TourScript(const std::vector<TourWord>& words, TourTexts texts)
    : m_words(words),
      m_texts(std::move(texts))
{
    for (const TourWord& word : m_words)
        m_patterns.push_back(PatternOf(word.shape));
}

std::vector<TourStep> TourScript::Read(const QString& file)
{
    m_place = file;
    try {
        ReadFile(QFileInfo(file).absoluteFilePath());
        EndStep();
    } catch (const Error& failure) {
        Fail(QStringLiteral("%1: %2").arg(m_place, failure.Description()));
    }
    return std::move(m_steps);
}

void TourScript::ReadFile(const QString& path)
{
    if (m_open.contains(path))
        Fail(QStringLiteral("%1 includes itself").arg(path));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        Fail(QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString()));
    m_open.append(path);
    const QString including = m_place;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < lines.size(); ++i) {
        m_place = QStringLiteral("%1:%2").arg(QFileInfo(path).fileName()).arg(i + 1);
        ReadLine(lines[i].trimmed());
    }
    m_place = including;
    m_open.removeLast();
}

void TourScript::ReadLine(const QString& line)
{
    static const QRegularExpression include(PatternOf(QStringLiteral("include PLACE")));
    static const QRegularExpression text(PatternOf(QStringLiteral("text NAME NUMBER")));
    static const QRegularExpression step(PatternOf(QStringLiteral("step REST")));
    if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
        return;
    if (const auto match = include.match(line); match.hasMatch())
        ReadFile(QFileInfo(m_open.last()).dir().absoluteFilePath(match.captured(1).remove(QLatin1Char('"'))));
    else if (const auto named = text.match(line); named.hasMatch())
        m_texts.Name(named.captured(1), named.captured(2).toInt());
    else if (const auto begun = step.match(line); begun.hasMatch())
        BeginStep(begun.captured(1));
    else if (m_steps.empty())
        Fail(QStringLiteral("there is no step before it"));
    else
        m_steps.back().lines.push_back(Take(line));
}

TourLine TourScript::Take(QString line) const
{
    static const QRegularExpression limit(QStringLiteral(" +within (\\d{1,4}) s$"));
    static const QRegularExpression no(QStringLiteral("^not +|(?<= is) +not(?= )"));
    TourLine taken;
    taken.place = m_place;
    const QRegularExpressionMatch limited = limit.match(line);
    if (limited.hasMatch()) {
        taken.patience = limited.captured(1).toInt() * 1000;
        line.truncate(limited.capturedStart());
    }
    QStringList values;
    const TourWord* word = Find(line, values);
    const bool opposite = !word;
    if (opposite)
        word = Find(QString(line).remove(no), values);
    if (!word || (word->act && (opposite || limited.hasMatch())))
        Refuse(line);
    if (word->act)
        taken.act = [act = word->act, values] { act(values); };
    else if (opposite)
        taken.look = [look = word->look, values] { return Opposite(look(values), values); };
    else
        taken.look = [look = word->look, values] { return look(values); };
    return taken;
}

// The word that a line is written like, and its values as they are meant.
const TourWord* TourScript::Find(const QString& line, QStringList& values) const
{
    for (std::size_t i = 0; i < m_words.size(); ++i) {
        const TourWord& word = m_words[i];
        const QRegularExpressionMatch match = m_patterns[i].match(line);
        if (!match.hasMatch())
            continue;
        values = match.capturedTexts().mid(1);
        if (word.shape.contains(QLatin1String("KEY")))
            CheckKey(values.first());
        if (word.shape.endsWith(QLatin1String("REST")))
            return &word;
        for (QString& value : values)
            value = m_texts.Expand(value.remove(QLatin1Char('"')));
        return &word;
    }
    return nullptr;
}

// Names the words that the line has something of.
void TourScript::Refuse(const QString& line) const
{
    const QStringList parts = line.split(QLatin1Char(' '));
    QStringList shapes;
    for (const TourWord& word : m_words) {
        const QStringList known = word.shape.split(QLatin1Char(' '));
        if (std::ranges::any_of(parts, [&](const QString& part) { return known.contains(part); }))
            shapes << word.shape;
    }
    Fail(shapes.isEmpty() ? QStringLiteral("\"%1\" is not a word of the tour").arg(parts.first())
                          : QStringLiteral("not understood; there is: ") + shapes.join(QStringLiteral("; ")));
}

void TourScript::BeginStep(const QString& heading)
{
    static const QRegularExpression parts(QStringLiteral("^([\\w-]+): +(.+)$"));
    const QRegularExpressionMatch match = parts.match(heading);
    if (!match.hasMatch())
        Fail(QStringLiteral("a step begins with \"step NAME: what is expected, in words\""));
    if (!m_steps.empty())
        EndStep();
    const QString name = match.captured(1);
    if (std::ranges::any_of(m_steps, [&](const TourStep& step) { return step.name == name; }))
        Fail(QStringLiteral("there is another step %1").arg(name));
    m_steps.push_back({.name = name, .expected = match.captured(2), .lines = {}});
}

void TourScript::EndStep() const
{
    if (m_steps.empty())
        Fail(QStringLiteral("there is no step in it"));
    const TourStep& step = m_steps.back();
    if (step.lines.empty() || !step.lines.back().look)
        Fail(QStringLiteral("the step %1 before it does not end with what is seen").arg(step.name));
}

#include "tour/TourScript.h"

#include "core/Errors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>

namespace {

[[noreturn]] void Fail(const QString& reason)
{
    throw Error(ErrorCode::General, reason);
}

TourWord::Look Opposite(const TourWord::Look& look)
{
    return [look](const QStringList& values) {
        return look(values).isEmpty() ? values.join(QLatin1Char(' ')) : QString();
    };
}

} // namespace

TourScript::TourScript(std::vector<TourWord> words, TourTexts texts)
    : m_words(std::move(words)),
      m_texts(std::move(texts))
{
    m_own = {
        {QStringLiteral("step REST"), [this](const QStringList& values) { BeginStep(values); }},
        {QStringLiteral("text NAME NUMBER"),
         [this](const QStringList& values) { m_texts.Name(values[0], values[1].toInt()); }},
        {QStringLiteral("include NAME"),
         [this](const QStringList& values) {
             ReadFile(QFileInfo(m_open.last()).dir().absoluteFilePath(values[0]));
         }},
    };
}

std::vector<TourStep> TourScript::Read(const QString& file)
{
    m_steps.clear();
    m_place = file;
    try {
        ReadFile(QFileInfo(file).absoluteFilePath());
        if (m_steps.empty())
            Fail(QStringLiteral("there is no step in it"));
        EndStep();
    } catch (const Error& failure) {
        Fail(QStringLiteral("%1: %2").arg(m_place, failure.Description()));
    }
    return m_steps;
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
    if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
        return;
    if (TakeOwn(line))
        return;
    TourLine taken = Take(line);
    if (m_steps.empty())
        Fail(QStringLiteral("there is no step before it"));
    m_steps.back().lines.push_back(std::move(taken));
}

QList<TourToken> TourScript::Tokens(const QString& line) const
{
    if (line.count(QLatin1Char('"')) % 2 != 0)
        Fail(QStringLiteral("a double quote is missing"));
    // Quoted and unquoted pieces, joined into tokens where no blank stands between them.
    static const QRegularExpression piece(QStringLiteral("\"([^\"]*)\"|([^\\s\"]+)"));
    QList<TourToken> tokens;
    qsizetype end = -1;
    QRegularExpressionMatchIterator pieces = piece.globalMatch(line);
    while (pieces.hasNext()) {
        const QRegularExpressionMatch match = pieces.next();
        const bool quoted = match.hasCaptured(1);
        if (match.capturedStart() != end)
            tokens.append({{}, quoted, match.capturedStart()});
        tokens.last().text += quoted ? m_texts.Expand(match.captured(1)) : match.captured(2);
        end = match.capturedEnd();
    }
    return tokens;
}

bool TourScript::TakeOwn(const QString& line)
{
    for (const TourWord& word : m_own) {
        if (const auto values = MatchShape(word.shape, line, Tokens(line))) {
            word.act(*values);
            return true;
        }
    }
    return false;
}

TourLine TourScript::Take(QString line) const
{
    static const QRegularExpression limit(QStringLiteral(" +within (\\d{1,4}) s$"));
    const QRegularExpressionMatch limited = limit.match(line);
    line.truncate(limited.hasMatch() ? limited.capturedStart() : line.size());
    QList<TourToken> tokens = Tokens(line);
    std::optional<TourLine> taken = Match(line, tokens, false);
    const auto no = std::ranges::find_if(
        tokens, [](const TourToken& token) { return !token.quoted && token.text == QLatin1String("not"); });
    if (!taken && no != tokens.end()) {
        tokens.erase(no);
        taken = Match(line, tokens, true);
    }
    if (!taken || (limited.hasMatch() && !taken->look))
        Refuse(tokens);
    if (limited.hasMatch())
        taken->patience = limited.captured(1).toInt() * 1000;
    return *taken;
}

std::optional<TourLine> TourScript::Match(const QString& line, const QList<TourToken>& tokens,
                                          bool opposite) const
{
    for (const TourWord& word : m_words) {
        const auto values = MatchShape(word.shape, line, tokens);
        if (!values || (opposite && !word.look))
            continue;
        if (word.act)
            return TourLine{m_place, [act = word.act, v = *values] { act(v); }, {}};
        const TourWord::Look look = opposite ? Opposite(word.look) : word.look;
        return TourLine{m_place, {}, [look, v = *values] { return look(v); }};
    }
    return std::nullopt;
}

// Names what is written like the line, if anything.
void TourScript::Refuse(const QList<TourToken>& tokens) const
{
    QStringList shapes;
    for (const std::vector<TourWord>* words : {&m_own, &m_words}) {
        for (const TourWord& word : *words) {
            const QStringList parts = word.shape.split(QLatin1Char(' '));
            if (std::ranges::any_of(tokens,
                                    [&](const TourToken& token) { return parts.contains(token.text); }))
                shapes << word.shape;
        }
    }
    Fail(shapes.isEmpty() ? QStringLiteral("\"%1\" is not a word of the tour").arg(tokens.first().text)
                          : QStringLiteral("not understood; there is: ") + shapes.join(QStringLiteral("; ")));
}

void TourScript::BeginStep(const QStringList& values)
{
    static const QRegularExpression heading(QStringLiteral("^([\\w-]+): +(.+)$"));
    const QRegularExpressionMatch match = heading.match(values[0]);
    if (!match.hasMatch())
        Fail(QStringLiteral("a step begins with \"step NAME: what is expected, in words\""));
    if (!m_steps.empty())
        EndStep();
    const QString name = match.captured(1);
    if (std::ranges::any_of(m_steps, [&](const TourStep& step) { return step.name == name; }))
        Fail(QStringLiteral("there is another step %1").arg(name));
    m_steps.push_back({.name = name, .expected = m_texts.Expand(match.captured(2)), .lines = {}});
}

void TourScript::EndStep() const
{
    const TourStep& step = m_steps.back();
    if (step.lines.empty() || !step.lines.back().look)
        Fail(QStringLiteral("the step %1 before it does not end with what is seen").arg(step.name));
}

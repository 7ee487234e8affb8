#include "core/texts/CatalogueFile.h"

#include "core/texts/Errors.h"

#include <QFile>
#include <QStringDecoder>

namespace {

// These sentences are for whoever writes a catalogue; they cannot come from one.
[[noreturn]] void RaiseBroken(const QString& name, qsizetype line, const char* reason)
{
    throw Error(ErrorCode::General, QStringLiteral("Text catalogue %1, line %2: %3")
                                        .arg(name, QString::number(line), QLatin1String(reason)));
}

struct Entry {
    int id;
    QString text;
};

Entry ParseEntry(QStringView line, const QString& name, qsizetype number)
{
    const qsizetype first = line.indexOf(u'"');
    const qsizetype last = line.lastIndexOf(u'"');
    if (first < 0 || first == last)
        RaiseBroken(name, number, "the text is not in double quotes");
    if (!line.mid(last + 1).trimmed().isEmpty())
        RaiseBroken(name, number, "something follows the text");
    bool ok = false;
    const int id = line.left(first).trimmed().toInt(&ok);
    if (!ok || id <= 0)
        RaiseBroken(name, number, "the number is missing or not positive");
    return {id, line.mid(first + 1, last - first - 1).toString()};
}

} // namespace

Catalogue ParseCatalogue(const QByteArray& bytes, const QString& name)
{
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(bytes);
    if (decode.hasError())
        throw Error(ErrorCode::General, QStringLiteral("Text catalogue %1 is not UTF-8").arg(name));

    Catalogue catalogue;
    qsizetype number = 0;
    for (const QStringView raw : QStringView(text).split(u'\n')) {
        ++number;
        const QStringView line = raw.trimmed();
        if (line.isEmpty() || line.startsWith(u';'))
            continue;
        const Entry entry = ParseEntry(line, name, number);
        if (catalogue.contains(entry.id))
            RaiseBroken(name, number, "this number was used before");
        catalogue.insert(entry.id, entry.text);
    }
    return catalogue;
}

Catalogue ReadCatalogue(const QString& file)
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        throw Error(ErrorCode::General,
                    QStringLiteral("Text catalogue %1 cannot be read: %2").arg(file, source.errorString()));
    return ParseCatalogue(source.readAll(), file);
}

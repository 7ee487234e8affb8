// Texts of the catalogue and the values that they are filled with.

#include "core/texts/FormatMessage.h"
#include "fuzz/Input.h"

#include <QStringList>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    QStringList values;
    for (int count = input.Octet() % 12; count > 0; --count)
        values.append(QString::fromStdString(input.Text()));
    const QString text = QString::fromStdString(input.RestAsText());

    // Values stand in the result as they are, whatever they look like.
    const QString filled = FormatMessage(QStringLiteral("<#01>") + text, {text});
    MUST_HOLD(filled.startsWith(u'<' + text + u'>'));
    // What is written with its escapes comes out again.
    QString escaped = text;
    escaped.replace(u'\\', QStringLiteral("\\\\"));
    MUST_HOLD(FormatMessage(escaped, {}) == text);
    // Escapes and placeholders are those of each line by itself, unless one spans the break.
    const qsizetype line = text.indexOf(u'\n');
    if (line > 0 && text[line - 1] != u'\\')
        MUST_HOLD(FormatMessage(text, values) ==
                  FormatMessage(text.left(line), values) + FormatMessage(text.mid(line), values));
    return 0;
}

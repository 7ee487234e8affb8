// Catalogues, which people write by hand.

#include "core/texts/CatalogueFile.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "fuzz/Input.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    try {
        const Catalogue catalogue = ParseCatalogue(bytes, QStringLiteral("a"));
        QString again;
        for (auto entry = catalogue.begin(); entry != catalogue.end(); ++entry) {
            MUST_HOLD(entry.key() > 0 && !entry.value().contains(u'\n'));
            FormatMessage(entry.value(), {entry.value(), QString()});
            again += QStringLiteral("%1 \"").arg(entry.key()) + entry.value() + QStringLiteral("\"\n");
        }
        MUST_HOLD(ParseCatalogue(again.toUtf8(), QStringLiteral("b")) == catalogue);
    } catch (const Error& error) {
        MUST_HOLD(error.Description().startsWith(QStringLiteral("Text catalogue a")));
    }
    return 0;
}

#include "radio/base/EmergencyCalls.h"

#include "core/texts/FormatMessage.h"
#include "core/texts/StringSourceImpl.h"
#include "radio/base/TextIds.h"

namespace {

struct CatalogueSource : IStringSource {
    explicit CatalogueSource(const Catalogue& texts) : m_texts(texts) {}

    QString LoadString(int id) const override { return m_texts.value(id); }

private:
    const Catalogue& m_texts;
};

} // namespace

QSet<QString> EmergencyCallTexts(const IStringSource& strings)
{
    QSet<QString> texts;
    const auto add = [&](int emergency, std::initializer_list<int> calls) {
        for (const int call : calls) {
            const QString text = FormatMessage(strings, emergency, {strings.LoadString(call)});
            texts.insert(text);
            texts.insert(FormatMessage(strings, RadioText::DataCall, {text}));
        }
    };
    add(RadioText::EmergencyIn, {RadioText::IncomingCall, RadioText::IncomingPstnCall,
                                 RadioText::IncomingPabxCall, RadioText::IncomingSysWideCall});
    add(RadioText::EmergencyOut, {RadioText::Voice, RadioText::PstnCall, RadioText::PabxCall});
    return texts;
}

QSet<QString> EmergencyCallTexts()
{
    QSet<QString> texts;
    for (const Catalogue& catalogue : CStringSourceImpl::Installed())
        if (catalogue.contains(RadioText::EmergencyIn) && catalogue.contains(RadioText::EmergencyOut))
            texts += EmergencyCallTexts(CatalogueSource(catalogue));
    texts.remove({});
    return texts;
}

#include "core/texts/LangId.h"

namespace {

struct Row {
    quint16 langId;
    QLocale::Language language;
    QLocale::Territory territory;
};

// A language's first row also stands for its countries that are not listed.
constexpr Row Rows[] = {
    {0x0409, QLocale::English, QLocale::UnitedStates},
    {0x0809, QLocale::English, QLocale::UnitedKingdom},
    {0x0c09, QLocale::English, QLocale::Australia},
    {0x1009, QLocale::English, QLocale::Canada},
    {0x1409, QLocale::English, QLocale::NewZealand},
    {0x1809, QLocale::English, QLocale::Ireland},
    {0x1c09, QLocale::English, QLocale::SouthAfrica},
    {0x4009, QLocale::English, QLocale::India},
    {0x4809, QLocale::English, QLocale::Singapore},
    {0x0407, QLocale::German, QLocale::Germany},
    {0x0807, QLocale::German, QLocale::Switzerland},
    {0x0c07, QLocale::German, QLocale::Austria},
    {0x1007, QLocale::German, QLocale::Luxembourg},
    {0x1407, QLocale::German, QLocale::Liechtenstein},
    {0x040c, QLocale::French, QLocale::France},
    {0x080c, QLocale::French, QLocale::Belgium},
    {0x0c0c, QLocale::French, QLocale::Canada},
    {0x100c, QLocale::French, QLocale::Switzerland},
    {0x140c, QLocale::French, QLocale::Luxembourg},
    {0x180c, QLocale::French, QLocale::Monaco},
    {0x0410, QLocale::Italian, QLocale::Italy},
    {0x0810, QLocale::Italian, QLocale::Switzerland},
    {0x0c0a, QLocale::Spanish, QLocale::Spain},
    {0x080a, QLocale::Spanish, QLocale::Mexico},
    {0x2c0a, QLocale::Spanish, QLocale::Argentina},
    {0x340a, QLocale::Spanish, QLocale::Chile},
    {0x240a, QLocale::Spanish, QLocale::Colombia},
    {0x0816, QLocale::Portuguese, QLocale::Portugal},
    {0x0416, QLocale::Portuguese, QLocale::Brazil},
    {0x0413, QLocale::Dutch, QLocale::Netherlands},
    {0x0813, QLocale::Dutch, QLocale::Belgium},
    {0x0406, QLocale::Danish, QLocale::Denmark},
    {0x041d, QLocale::Swedish, QLocale::Sweden},
    {0x081d, QLocale::Swedish, QLocale::Finland},
    {0x0414, QLocale::NorwegianBokmal, QLocale::Norway},
    {0x0814, QLocale::NorwegianNynorsk, QLocale::Norway},
    {0x040b, QLocale::Finnish, QLocale::Finland},
    {0x040f, QLocale::Icelandic, QLocale::Iceland},
    {0x0415, QLocale::Polish, QLocale::Poland},
    {0x0405, QLocale::Czech, QLocale::Czechia},
    {0x041b, QLocale::Slovak, QLocale::Slovakia},
    {0x0424, QLocale::Slovenian, QLocale::Slovenia},
    {0x041a, QLocale::Croatian, QLocale::Croatia},
    {0x101a, QLocale::Croatian, QLocale::BosniaAndHerzegovina},
    {0x040e, QLocale::Hungarian, QLocale::Hungary},
    {0x0418, QLocale::Romanian, QLocale::Romania},
    {0x0402, QLocale::Bulgarian, QLocale::Bulgaria},
    {0x0408, QLocale::Greek, QLocale::Greece},
    {0x041c, QLocale::Albanian, QLocale::Albania},
    {0x042f, QLocale::Macedonian, QLocale::Macedonia},
    {0x0419, QLocale::Russian, QLocale::Russia},
    {0x0422, QLocale::Ukrainian, QLocale::Ukraine},
    {0x0423, QLocale::Belarusian, QLocale::Belarus},
    {0x0425, QLocale::Estonian, QLocale::Estonia},
    {0x0426, QLocale::Latvian, QLocale::Latvia},
    {0x0427, QLocale::Lithuanian, QLocale::Lithuania},
    {0x0403, QLocale::Catalan, QLocale::Spain},
    {0x042d, QLocale::Basque, QLocale::Spain},
    {0x0456, QLocale::Galician, QLocale::Spain},
    {0x083c, QLocale::Irish, QLocale::Ireland},
    {0x0452, QLocale::Welsh, QLocale::UnitedKingdom},
    {0x043a, QLocale::Maltese, QLocale::Malta},
    {0x046e, QLocale::Luxembourgish, QLocale::Luxembourg},
    {0x041f, QLocale::Turkish, QLocale::Turkey},
    {0x040d, QLocale::Hebrew, QLocale::Israel},
    {0x0401, QLocale::Arabic, QLocale::SaudiArabia},
    {0x0411, QLocale::Japanese, QLocale::Japan},
    {0x0412, QLocale::Korean, QLocale::SouthKorea},
    {0x0804, QLocale::Chinese, QLocale::China},
    {0x0404, QLocale::Chinese, QLocale::Taiwan},
};

} // namespace

quint16 LangIdOf(const QLocale& locale)
{
    const Row* first = nullptr;
    for (const Row& row : Rows) {
        if (row.language != locale.language())
            continue;
        if (row.territory == locale.territory())
            return row.langId;
        if (!first)
            first = &row;
    }
    return first ? first->langId : LangIdEnglishUs;
}

QLocale LocaleOf(quint16 langId)
{
    const Row* first = nullptr;
    for (const Row& row : Rows) {
        if (row.langId == langId)
            return QLocale(row.language, row.territory);
        // Croatian shares its primary language with its neighbours; the first row with it decides.
        if (!first && PrimaryLanguage(row.langId) == PrimaryLanguage(langId))
            first = &row;
    }
    return first ? QLocale(first->language, first->territory) : QLocale::c();
}

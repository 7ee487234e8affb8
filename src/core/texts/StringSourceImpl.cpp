#include "core/texts/StringSourceImpl.h"

#include "core/base/AppPaths.h"
#include "core/base/ProgramLog.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/LangId.h"
#include "core/texts/TextIds.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>
#include <iterator>
#include <optional>

// Outside any namespace, as Q_INIT_RESOURCE demands: the texts lie in a static library.
static void InitCatalogueResource()
{
    Q_INIT_RESOURCE(veltorkyn_catalogue);
}

namespace {

// Name of the help file, name of the operators' group, and a number that is stored as a setting.
constexpr int NeverTranslated[] = {101, 2256, 4097};

constexpr auto BuiltInFile = ":/veltorkyn/catalogue/CKYN.CResourceStrs";

QString SatelliteName(const QString& applicationKey, const char* kind, quint16 number)
{
    return (applicationKey + QLatin1String(kind) + QString::number(number, 16)).toUpper() + ".CResourceStrs";
}

std::optional<Catalogue> FindSatellite(const QStringList& folders, const QString& name)
{
    for (const QString& folder : folders) {
        const QString file = folder + u'/' + name;
        if (!QFileInfo::exists(file))
            continue;
        try {
            return ReadCatalogue(file);
        } catch (const Error& error) {
            ProgramLog::Write(error.Description());
        }
    }
    return std::nullopt;
}

} // namespace

CStringSourceImpl::CStringSourceImpl(QStringList satelliteFolders)
    : m_folders(std::move(satelliteFolders)),
      m_langId(LangIdOf(QLocale::system()))
{
    m_builtIn = BuiltIn();
}

void CStringSourceImpl::SetLangID(quint16 langId)
{
    m_langId = langId;
    QLocale::setDefault(LocaleOf(langId));
}

const IStringSource& CStringSourceImpl::CreateStringSource(const QString& applicationKey)
{
    auto satellite = FindSatellite(m_folders, SatelliteName(applicationKey, "SL", m_langId));
    if (!satellite)
        satellite = FindSatellite(m_folders, SatelliteName(applicationKey, "PL", PrimaryLanguage(m_langId)));
    m_satellite = satellite.value_or(Catalogue{});
    for (const int id : NeverTranslated)
        m_satellite.remove(id);
    return *this;
}

QString CStringSourceImpl::LoadString(int id) const
{
    if (const auto text = m_satellite.constFind(id); text != m_satellite.cend())
        return *text;
    if (const auto text = m_builtIn.constFind(id); text != m_builtIn.cend())
        return *text;
    throw Error(ErrorCode::General,
                FormatMessage(m_builtIn.value(CoreText::NoSuchText, "#01"), {QString::number(id)}));
}

QStringList CStringSourceImpl::DefaultFolders()
{
    QStringList folders = {AppPaths::DataFolder() + "/catalogue", "/usr/local/share/veltorkyn/catalogue",
                           "/usr/share/veltorkyn/catalogue"};
    if (QCoreApplication::instance())
        folders << QCoreApplication::applicationDirPath() + "/catalogue";
    return folders;
}

QList<quint16> CStringSourceImpl::InstalledLanguages(const QStringList& satelliteFolders)
{
    static const QRegularExpression name(QStringLiteral("^CKYN([SP])L([0-9A-F]+)\\.CResourceStrs$"));
    QList<quint16> languages{LangIdEnglishUs};
    for (const QString& folder : satelliteFolders) {
        for (const QString& file : QDir(folder).entryList({QStringLiteral("*.CResourceStrs")})) {
            const QRegularExpressionMatch match = name.match(file);
            if (!match.hasMatch())
                continue;
            quint16 language = match.captured(2).toUShort(nullptr, 16);
            if (match.captured(1) == QLatin1String("P"))
                language = LangIdOf(LocaleOf(language));
            if (!languages.contains(language))
                languages.append(language);
        }
    }
    return languages;
}

Catalogue CStringSourceImpl::BuiltIn()
{
    InitCatalogueResource();
    return ReadCatalogue(BuiltInFile);
}

bool CStringSourceImpl::IsTranslated(int id)
{
    return std::find(std::begin(NeverTranslated), std::end(NeverTranslated), id) == std::end(NeverTranslated);
}

QList<Catalogue> CStringSourceImpl::Installed(const QStringList& satelliteFolders)
{
    QList<Catalogue> catalogues{BuiltIn()};
    for (const QString& folder : satelliteFolders)
        for (const QFileInfo& file : QDir(folder).entryInfoList({QStringLiteral("*.CResourceStrs")}))
            try {
                catalogues.append(ReadCatalogue(file.filePath()));
            } catch (const Error& error) {
                ProgramLog::Write(error.Description());
            }
    return catalogues;
}

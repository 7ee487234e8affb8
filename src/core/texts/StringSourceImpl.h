#pragma once

#include "core/texts/CatalogueFile.h"
#include "core/texts/StringSource.h"

#include <QStringList>

// The built-in catalogue, and the satellite catalogue of the user's language when one is installed.
class CStringSourceImpl : public IStringSource {
public:
    // Folders that may hold satellite catalogues, most important first. By default those of the user, of
    // the system and of the program itself.
    explicit CStringSourceImpl(QStringList satelliteFolders = DefaultFolders());

    // Windows language identifier; initially that of the user's language (0x0409 for US English).
    quint16 LangID() const { return m_langId; }
    // Stores the identifier and makes it the locale in which dates, times and numbers are shown.
    void SetLangID(quint16 langId);

    // Looks for the satellites "<key>SL<LangID>.CResourceStrs" and "<key>PL<primary language>.CResourceStrs".
    // A missing or unreadable satellite is not reported; the built-in texts are used.
    const IStringSource& CreateStringSource(const QString& applicationKey);

    QString LoadString(int id) const override;

    static QStringList DefaultFolders();
    static Catalogue BuiltIn();
    // False for the few texts that a satellite does not replace: names and numbers that are stored.
    static bool IsTranslated(int id);
    // English, and the languages of the satellites in these folders, as Windows language identifiers.
    static QList<quint16> InstalledLanguages(const QStringList& satelliteFolders = DefaultFolders());
    // The built-in catalogue and every satellite in these folders that can be read.
    static QList<Catalogue> Installed(const QStringList& satelliteFolders = DefaultFolders());

private:
    QStringList m_folders;
    quint16 m_langId;
    Catalogue m_builtIn;
    Catalogue m_satellite;
};

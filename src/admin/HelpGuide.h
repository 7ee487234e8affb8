#pragma once

#include <QHash>
#include <QString>

struct IStringSource;

// The user guide: a file of pages in Markdown. A line "@page NAME" begins a page; the first page is the
// contents. Links between pages are written [text](page:NAME); pictures are in the folder beside the file
// that has the file's name without its extension.
class HelpGuide {
public:
    // Raises Error when the file cannot be read or holds no page.
    HelpGuide(const QString& path, const IStringSource& strings);

    const QString& ContentsPage() const { return m_contents; }
    bool Contains(const QString& page) const { return m_pages.contains(page); }
    // Markdown; empty for a page that does not exist.
    QString Page(const QString& name) const { return m_pages.value(name); }
    QStringList Pages() const { return m_pages.keys(); }
    const QString& PictureFolder() const { return m_pictures; }

private:
    QHash<QString, QString> m_pages;
    QString m_contents;
    QString m_pictures;
};

// The page for a window, given its object name; a tab of the main window follows a slash ("winMain/scada").
// Empty when the contents suit it best.
QString HelpPageFor(const QString& window);

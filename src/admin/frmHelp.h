#pragma once

#include <QWidget>

class HelpGuide;
class QPushButton;
class QTextBrowser;
struct IStringSource;

// Shows the user guide, a page at a time, alongside the other windows.
class frmHelp : public QWidget {
    Q_OBJECT

public:
    // The guide must outlive it.
    frmHelp(const HelpGuide& guide, const IStringSource& strings, QWidget* parent = nullptr);

    // Shows the window at a page, or at the contents if there is no such page.
    void ShowPage(const QString& page);
    QString Page() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Go(const QString& page);
    void Render();
    QPushButton* AddButton(const char* name, int textId);

    const HelpGuide& m_guide;
    QTextBrowser* txtHelp;
    QPushButton* cmdContents = nullptr;
    QPushButton* cmdBack = nullptr;
    QPushButton* cmdForward = nullptr;
    QStringList m_visited;
    qsizetype m_current = -1; // in m_visited
};

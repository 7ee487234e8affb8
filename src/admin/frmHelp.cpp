#include "admin/frmHelp.h"

#include "admin/HelpGuide.h"
#include "admin/TextIds.h"
#include "core/desktop/ShowWindow.h"
#include "core/widgets/Captions.h"
#include "core/widgets/Icons.h"

#include <QApplication>
#include <QDesktopServices>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>
#include <algorithm>

namespace {

constexpr auto PageScheme = "page";
constexpr int ColumnCharacters = 100;
constexpr int PictureWidth = 720; // pixels, as wide as the guide's pictures
constexpr int Lines = 38;

} // namespace

frmHelp::frmHelp(const HelpGuide& guide, const IStringSource& strings, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_guide(guide),
      txtHelp(new QTextBrowser(this))
{
    setObjectName(QStringLiteral("frmHelp"));
    setProperty("textId", AdminText::HelpCaption);
    setWindowIcon(LoadIcon(QStringLiteral("veltorkyn")));
    txtHelp->setObjectName(QStringLiteral("txtHelp"));
    txtHelp->setProperty("accessibleNameId", AdminText::HelpCaption);
    txtHelp->setOpenLinks(false);
    txtHelp->setSearchPaths({guide.PictureFolder()});

    auto* layout = new QVBoxLayout(this);
    auto* buttons = new QHBoxLayout;
    layout->addLayout(buttons);
    layout->addWidget(txtHelp);
    cmdContents = AddButton("cmdContents", AdminText::HelpContents);
    cmdBack = AddButton("cmdBack", AdminText::HelpBack);
    cmdForward = AddButton("cmdForward", AdminText::HelpForward);
    for (QPushButton* button : {cmdContents, cmdBack, cmdForward})
        buttons->addWidget(button);
    buttons->addStretch();
    LoadCaptions(*this, strings);
    constexpr int Border = 60;
    resize(std::max(PictureWidth + Border, ColumnCharacters * fontMetrics().averageCharWidth()),
           Lines * fontMetrics().lineSpacing());

    connect(cmdContents, &QPushButton::clicked, this, [this] { Go(m_guide.ContentsPage()); });
    connect(cmdBack, &QPushButton::clicked, this, [this] {
        --m_current;
        Render();
    });
    connect(
        cmdForward, &QPushButton::clicked, this,
        [this] {
            ++m_current;
            Render();
        });
    connect(txtHelp, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) {
        if (link.scheme() == QLatin1String(PageScheme))
            Go(link.path());
        else
            QDesktopServices::openUrl(link);
    });
}

QPushButton* frmHelp::AddButton(const char* name, int textId)
{
    auto* button = new QPushButton(this);
    button->setObjectName(QLatin1String(name));
    button->setProperty("textId", textId);
    return button;
}

QString frmHelp::Page() const
{
    return m_visited.value(m_current);
}

void frmHelp::ShowPage(const QString& page)
{
    Go(page);
    // A dialog that blocks the whole program, like the logon, would block the guide as well.
    const QWidget* modal = QApplication::activeModalWidget();
    const bool blocked = modal && modal != this && modal->windowModality() == Qt::ApplicationModal;
    if (blocked && windowModality() != Qt::ApplicationModal) {
        hide();
        setWindowModality(Qt::ApplicationModal);
    } else if (!modal) {
        setWindowModality(Qt::NonModal);
    }
    BringToScreen(*this, Activation::Take);
    txtHelp->setFocus();
}

void frmHelp::Go(const QString& page)
{
    const QString name = m_guide.Contains(page) ? page : m_guide.ContentsPage();
    if (name != Page()) {
        m_visited = m_visited.mid(0, m_current + 1);
        m_visited.append(name);
        ++m_current;
    }
    Render();
}

void frmHelp::Render()
{
    txtHelp->setMarkdown(m_guide.Page(Page()));
    cmdBack->setEnabled(m_current > 0);
    cmdForward->setEnabled(m_current + 1 < m_visited.size());
}

void frmHelp::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

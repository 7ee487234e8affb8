#include "mainwindow/lists/PaneCover.h"

#include "core/texts/StringSource.h"
#include "mainwindow/base/TextIds.h"

#include <QLabel>

QLabel* NewPaneCover(const IStringSource& strings, QWidget* parent)
{
    auto* cover = new QLabel(strings.LoadString(MainText::Covered), parent);
    cover->setObjectName(QStringLiteral("paneCover"));
    cover->setAlignment(Qt::AlignCenter);
    cover->setWordWrap(true);
    cover->setFrameShape(QFrame::StyledPanel);
    cover->hide();
    return cover;
}

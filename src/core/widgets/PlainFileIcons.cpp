#include "core/widgets/PlainFileIcons.h"

#include <QAbstractFileIconProvider>
#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QStyle>

namespace {

// Asked on a thread of the dialog's own, too.
class PlainFileIcons : public QAbstractFileIconProvider {
public:
    QIcon icon(IconType type) const override { return type == Folder ? m_folder : m_file; }
    QIcon icon(const QFileInfo& info) const override { return info.isDir() ? m_folder : m_file; }
    QString type(const QFileInfo& info) const override { return info.suffix(); }

private:
    const QIcon m_folder = QApplication::style()->standardIcon(QStyle::SP_DirIcon);
    const QIcon m_file = QApplication::style()->standardIcon(QStyle::SP_FileIcon);
};

} // namespace

void UsePlainFileIcons(QFileDialog& dialog)
{
    static PlainFileIcons icons; // a dialog does not own them
    dialog.setIconProvider(&icons);
}

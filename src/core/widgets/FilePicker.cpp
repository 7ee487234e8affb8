#include "core/widgets/FilePicker.h"

#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "core/widgets/PlainFileIcons.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

namespace {

QString Filter(const IStringSource& strings, int textId, const QString& suffix)
{
    return QStringLiteral("%1 (*.%2);;%3 (*)")
        .arg(strings.LoadString(textId), suffix, strings.LoadString(CoreText::AllFiles));
}

// What is said of the files of a kind.
struct FileWords {
    QString suffix;
    int files;
    int newCaption;
    int caption;
};

FileWords WordsOf(FilePicker::Kind kind)
{
    switch (kind) {
    case FilePicker::Kind::Workgroup:
        return {"kynw", CoreText::WorkgroupFiles, CoreText::NewDatabaseCaption,
                CoreText::SelectWorkgroupCaption};
    case FilePicker::Kind::Table:
        return {"csv", CoreText::TableFiles, CoreText::NewTableCaption, CoreText::SelectTableCaption};
    case FilePicker::Kind::Database:
        break;
    }
    return {"kyndb", CoreText::DatabaseFiles, CoreText::NewDatabaseCaption, CoreText::SelectDatabaseCaption};
}

} // namespace

QString FilePicker::Pick(const IStringSource& strings, QWidget* parent) const
{
    const FileWords words = WordsOf(kind);
    const int caption = newFile ? words.newCaption : words.caption;
    QFileDialog dialog(parent, strings.LoadString(caption));
    dialog.setObjectName("fileDialog");
    dialog.setNameFilter(Filter(strings, words.files, words.suffix));
    dialog.setAcceptMode(newFile ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(newFile ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setDefaultSuffix(words.suffix);
    // The desktop's own dialog would be hidden behind a call's window.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    UsePlainFileIcons(dialog);
    // Nothing is overwritten anyway: an existing file is refused when the new one is to be created.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    const QFileInfo startFile(start);
    if (startFile.absoluteDir().exists())
        dialog.setDirectory(startFile.absoluteDir());
    if (newFile || startFile.isFile())
        dialog.selectFile(startFile.fileName());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return dialog.selectedFiles().constFirst();
}

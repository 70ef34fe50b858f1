#include "tooling/FileDelegate.h"

#include "elements/MessageSink.h"
#include "shell/Dialogs.h"
#include "shell/Document.h"
#include "tooling/AttributeTable.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

FileDelegate::FileDelegate(AttributeTable *table, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_table(table)
{
}

QWidget *FileDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    const QString title = tr("Select image file");
    if (Dialogs::quiet()) {
        consolePrint(QStringLiteral("<font color=\"orange\"><b>Quiet mode: </b></font>file dialog \"%1\" counts as "
                                    "cancelled.<br>")
                         .arg(title.toHtmlEscaped()));
        return nullptr;
    }
    auto *dialog = new QFileDialog(parent, title, m_table ? m_table->document().folder() : QString(),
                                   QStringLiteral("*.png *.gif *.jpg *.jpeg *.bmp"));
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setFileMode(QFileDialog::ExistingFile);
    auto *self = const_cast<FileDelegate *>(this);
    connect(dialog, &QDialog::accepted, self, [self, dialog] {
        emit self->commitData(dialog);
        emit self->closeEditor(dialog);
    });
    connect(dialog, &QDialog::rejected, self, [self, dialog] { emit self->closeEditor(dialog); });
    return dialog;
}

void FileDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *dialog = qobject_cast<QFileDialog *>(editor);
    const QString name = index.data().toString();
    if (!dialog || name.isEmpty())
        return;
    const QString folder = m_table ? m_table->document().folder() : QString();
    dialog->selectFile(QFileInfo(name).isAbsolute() ? name : QDir(folder).filePath(name));
}

void FileDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    auto *dialog = qobject_cast<QFileDialog *>(editor);
    if (!dialog || dialog->selectedFiles().isEmpty())
        return;
    QString name = dialog->selectedFiles().constFirst();
    const QString folder = m_table ? m_table->document().folder() : QString();
    if (!folder.isEmpty()) {
        const QString relative = QDir(folder).relativeFilePath(name);
        if (!relative.startsWith(QLatin1String("..")))
            name = relative;
    }
    model->setData(index, name);
    if (m_table)
        m_table->setAttribute(index.sibling(index.row(), 0).data().toString(), name);
}

#include "tooling/DescriptionTools.h"

#include <QFileDialog>
#include <QFileInfo>

#include "elements/MessageSink.h"
#include "shell/Dialogs.h"
#include "tooling/DefineValidator.h"
#include "tooling/SchemaCheck.h"
#include "tooling/SvdCompleter.h"
#include "tooling/XmlGenerator.h"

DescriptionTools::DescriptionTools(QWidget *window, QObject *parent)
    : QObject(parent)
    , m_window(window)
{
}

void DescriptionTools::validate(const QString &fileName)
{
    if (fileName.isEmpty())
        return;
    DefineValidator().validate(fileName);
    SchemaCheck::checkXsd(fileName);
}

void DescriptionTools::validateFromMenu(const QString &folder)
{
    QString fileName;
    if (Dialogs::quiet()) {
        // Counts as cancelled, with the console line quiet mode gives.
        fileName = Dialogs::openFileName(m_window, tr("Validate XML File"), folder, tr("XML Files (*.xml)"));
    } else {
        QFileDialog dialog(m_window, tr("Validate XML File"), folder, tr("XML Files (*.xml)"));
        dialog.setFileMode(QFileDialog::ExistingFile);
        dialog.setLabelText(QFileDialog::Accept, tr("Validate"));
        if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty())
            fileName = dialog.selectedFiles().constFirst();
    }
    validate(fileName);
}

QString DescriptionTools::complete(const QString &input, const QString &output)
{
    const QString target = output.isEmpty() ? SvdCompleter::defaultOutputPath(input) : output;
    SvdCompleter completer;
    const bool ok = completer.completeFile(input, target);
    for (const QString &w : completer.warnings())
        consolePrint(QStringLiteral("<font color=\"orange\"><b>SVD completion: </b></font>%1<br>").arg(w.toHtmlEscaped()));
    if (!ok) {
        showError(completer.errorString());
        return QString();
    }
    consolePrint(QStringLiteral("<font color=\"blue\"><b>Completed SVD file: </b></font>%1: %2 peripherals, %3 registers, %4 fields<br>")
                     .arg(target.toHtmlEscaped())
                     .arg(completer.peripheralCount())
                     .arg(completer.registerCount())
                     .arg(completer.fieldCount()));
    return target;
}

void DescriptionTools::completeFromMenu(const QString &folder)
{
    const QString input = Dialogs::openFileName(m_window, tr("Open SVD File"), folder, tr("SVD Files (*.svd)"));
    if (input.isEmpty())
        return;
    const QString output = Dialogs::saveFileName(m_window, tr("Save Completed SVD File"),
                                                 SvdCompleter::defaultOutputPath(input), tr("SVD Files (*.svd)"));
    if (output.isEmpty())
        return;
    complete(input, output);
}

void DescriptionTools::generateFromMenu(const QString &folder, HardwareModel *model)
{
    QString svd = Dialogs::openFileName(m_window, tr("Open SVD File"), folder, tr("SVD Files (*.svd)"));
    if (svd.isEmpty())
        return;
    if (SvdCompleter::needsCompletion(svd)) {
        const QString completed = SvdCompleter::defaultOutputPath(svd);
        const auto answer = Dialogs::question(
            m_window, QMessageBox::Question, tr("Complete SVD file"),
            tr("%1 uses SVD constructs (derivedFrom, dim, cluster, bitOffset, bitRange, inherited sizes) that the SVD "
               "reader does not take, so parts of it would not bind.\n\nWrite a completed copy as %2 and generate "
               "from it?")
                .arg(QFileInfo(svd).fileName(), QFileInfo(completed).fileName()),
            QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);
        if (answer == QMessageBox::Yes) {
            const QString done = complete(svd, completed);
            if (done.isEmpty())
                return;
            svd = done;
        }
    }
    const bool tree = Dialogs::choose(m_window, tr("Select output format"), tr("Select output format"), tr("Tree"),
                                      tr("Group"));
    XmlGenerator generator(model);
    if (!generator.generateXMLFromSVD(svd, tree))
        return;
    if (Dialogs::question(m_window, QMessageBox::Question, tr("XML generated"), tr("Do you want to open the created XML?"),
                          QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes)
        == QMessageBox::Yes)
        emit openRequested(generator.outputPath());
}

#pragma once
#include <QObject>
#include <QString>

class HardwareModel;
class QWidget;

// The menu forms of the tools for description authors: the define validator
// followed by the schema check, the generator of first descriptions from SVD
// files, and the completion of vendor SVD files. The window forwards its
// menu slots here; every question goes through Dialogs, so quiet runs take
// the defaults and never block.
class DescriptionTools : public QObject
{
    Q_OBJECT
public:
    explicit DescriptionTools(QWidget *window, QObject *parent = nullptr);

    // The define validator, then the schema check, on one file.
    static void validate(const QString &fileName);

    // Asks for a description and validates it.
    void validateFromMenu(const QString &folder);
    // Asks for an SVD file (offering to complete it first when it uses
    // constructs the reader does not take) and for the output form, then
    // generates; on success offers to open the result.
    void generateFromMenu(const QString &folder, HardwareModel *model);
    // Asks for an SVD file and writes its completed copy.
    void completeFromMenu(const QString &folder);

    // Completes the file into SvdCompleter::defaultOutputPath() or the given
    // path, with a console line; empty on failure (reported).
    static QString complete(const QString &input, const QString &output = QString());

signals:
    void openRequested(const QString &fileName);

private:
    QWidget *m_window;
};

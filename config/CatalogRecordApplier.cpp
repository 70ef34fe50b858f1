#include "config/CatalogRecordApplier.h"

#include "config/Catalog.h"
#include "elements/ActiveElement.h"
#include "elements/DocumentTables.h"
#include "elements/NumberFormat.h"
#include "elements/Selectors.h"
#include "elements/SetDef.h"
#include "shell/MainWindow.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QMetaObject>
#include <QVariant>
#include <QWidget>

namespace {

bool invokeIfPresent(QObject *object, const char *signature, const char *name)
{
    if (object->metaObject()->indexOfMethod(signature) < 0)
        return false;
    return QMetaObject::invokeMethod(object, name);
}

} // namespace

CatalogRecordApplier::CatalogRecordApplier(DocumentTables *tables, QObject *form, const QString &folder)
    : m_tables(tables ? tables : DocumentTables::current())
    , m_form(form)
    , m_folder(folder)
{
}

QString CatalogRecordApplier::valueFor(const Parameter &parameter, const QString &value)
{
    if (!parameter.isNumeric())
        return value;
    const QString first = value.trimmed().section(QLatin1Char(' '), 0, 0);
    return normaliseNumber(first);
}

QString CatalogRecordApplier::labelText(const Parameter &parameter, const QString &value)
{
    if (!parameter.isUrl())
        return value;
    const QString text = parameter.text.isEmpty() ? value : parameter.text;
    return QStringLiteral("<a href=\"%1\">%2</a>").arg(value.toHtmlEscaped(), text.toHtmlEscaped());
}

QList<CatalogRecordApplier::Target> CatalogRecordApplier::apply(const QList<Parameter> &parameters,
                                                               const CatalogRecord &record)
{
    QList<Target> reached;
    for (const Parameter &p : parameters) {
        if (!record.has(p.id)) {
            reached.append(None);
            continue;
        }
        reached.append(applyOne(p, record.value(p.id)));
    }
    return reached;
}

CatalogRecordApplier::Target CatalogRecordApplier::applyOne(const Parameter &parameter, const QString &raw)
{
    const QString name = parameter.varName.trimmed();
    if (name.isEmpty() || !m_tables)
        return None;
    const QString value = valueFor(parameter, raw);

    if (ActiveElement *element = m_tables->element(name)) {
        // setDef splits at ";" and "=": a text holding them is set as it is.
        if (value.contains(QLatin1Char(';')) || value.contains(QLatin1Char('=')) || value.isEmpty())
            element->setValue(value, Selectors::Value);
        else
            SetDef::run(QStringLiteral("%1=%2").arg(element->widget()->objectName(), value), m_tables);
        return Define;
    }
    if (m_tables->dataValue(name)) {
        SetDef::run(QStringLiteral("%1=%2").arg(name, value), m_tables);
        return Define;
    }
    if (QObject *plot = m_tables->plots.value(name)) {
        applyToPlot(plot, value);
        return Plot;
    }
    if (QObject *picture = m_tables->images.value(name)) {
        QString path = value;
        if (!value.isEmpty() && QFileInfo(value).isRelative() && !m_folder.isEmpty()) {
            const QString inFolder = QDir(m_folder).filePath(value);
            if (QFileInfo::exists(inFolder))
                path = inFolder;
        }
        bool shown = false;
        QMetaObject::invokeMethod(picture, "setPicture", Q_RETURN_ARG(bool, shown), Q_ARG(QString, path));
        return Picture;
    }
    QObject *form = m_form ? m_form : static_cast<QObject *>(MainWindow::instance());
    if (form) {
        if (auto *label = form->findChild<QLabel *>(name)) {
            label->setText(labelText(parameter, value));
            if (parameter.isUrl()) {
                label->setTextFormat(Qt::RichText);
                label->setOpenExternalLinks(true);
            }
            return Label;
        }
    }
    return None;
}

bool CatalogRecordApplier::applyToPlot(QObject *plot, const QString &value)
{
    // Plots are reached by the names of their methods, so this works with
    // any plot class that offers them: the curves start afresh and the axes
    // are set again from the plot's own attributes.
    plot->setProperty("catalogValue", value);
    bool done = invokeIfPresent(plot, "clearCurves()", "clearCurves");
    done = invokeIfPresent(plot, "setAxes()", "setAxes") || done;
    if (!invokeIfPresent(plot, "replot()", "replot")) {
        if (auto *widget = qobject_cast<QWidget *>(plot))
            widget->update();
    }
    return done;
}

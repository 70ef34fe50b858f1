#include "reader/DefaultReader.h"

#include "automation/PythonBridge.h"

#include "elements/ActiveElement.h"
#include "elements/DocumentTables.h"
#include "model/DefineText.h"
#include "model/HardwareModel.h"
#include "reader/ActionReader.h"
#include "reader/DescriptionReader.h"

#include <QWidget>
#include <QXmlStreamAttributes>

namespace {

QString attribute(const QXmlStreamAttributes &a, const char *name)
{
    return a.value(QLatin1String(name)).toString();
}

bool has(const QXmlStreamAttributes &a, const char *name)
{
    return a.hasAttribute(QLatin1String(name));
}

// `setDef` wins over `setdef` when both stand; likewise for the inverse.
QString eitherSpelling(const QXmlStreamAttributes &a, const char *upper, const char *lower, bool *present)
{
    *present = has(a, upper) || has(a, lower);
    return has(a, upper) ? attribute(a, upper) : attribute(a, lower);
}

} // namespace

void DefaultReader::read(DescriptionReader &reader, QWidget *widget, ActiveElement *element,
                         const QXmlStreamAttributes &a)
{
    const QString define = widget->objectName();
    // Through the element where there is one: a radio group keeps its
    // properties on itself, not on its widget.
    auto setProperty = [widget, element](const char *name, const QVariant &value) {
        if (element)
            element->setProperty(name, value);
        else
            widget->setProperty(name, value);
    };
    if (element) {
        const QString header = has(a, "header") ? attribute(a, "header") : reader.currentHeader();
        const bool bound = attribute(a, "svd") != QLatin1String("0");
        if (!define.isEmpty() && !reader.tables().element(define)) {
            if (HardwareModel *model = reader.model()) {
                model->claimDefine(define, header, element, bound);
            } else {
                // A read without a hardware model (previews) still knows its
                // elements by define, and they still fit themselves to
                // their bits.
                reader.tables().addElement(define, element);
                const DefineText bits = DefineText::parse(define);
                element->setBits(bits.msb, bits.lsb);
            }
        } else if (define.isEmpty()) {
            element->setBits(-1, -1);
        }
        setProperty("my_default", attribute(a, "default"));
        setProperty("header", header);
        if (bound && !reader.svdName().isEmpty())
            setProperty("svd", reader.svdName());
        if (has(a, "svd"))
            setProperty("my_svd", attribute(a, "svd"));
    }

    bool hasSetDef = false;
    bool hasSetDefInv = false;
    const QString setDef = eitherSpelling(a, "setDef", "setdef", &hasSetDef);
    const QString setDefInv = eitherSpelling(a, "setDefInv", "setdefinv", &hasSetDefInv);
    const QString typeWord = element ? element->typeInfo() : QString();
    QObject *signalSource = element ? dynamic_cast<QObject *>(element) : widget;
    QString onSignal;
    QString offSignal;
    if (typeWord == QLatin1String("CheckBox") || typeWord == QLatin1String("ToggleButton")) {
        onSignal = QStringLiteral("checked_setDef");
        offSignal = QStringLiteral("unchecked_setDef");
    } else if (typeWord == QLatin1String("ComboBox")) {
        onSignal = QStringLiteral("selected_setDef");
    } else if (signalSource->metaObject()->indexOfSignal("clicked_setDef(QString)") >= 0) {
        onSignal = QStringLiteral("clicked_setDef");
    }
    if (hasSetDef) {
        setProperty("default_setdef", setDef.split(QLatin1Char(';'), Qt::SkipEmptyParts));
        if (!onSignal.isEmpty())
            ActionReader::connectAction(reader, signalSource, onSignal, QStringLiteral("setDef"));
    }
    if (hasSetDefInv) {
        setProperty("default_setdefinv", setDefInv.split(QLatin1Char(';'), Qt::SkipEmptyParts));
        if (!offSignal.isEmpty())
            ActionReader::connectAction(reader, signalSource, offSignal, QStringLiteral("setDef"));
    }
    if (has(a, "confirmation"))
        setProperty("confirmation", attribute(a, "confirmation"));
    if (has(a, "enabled"))
        widget->setEnabled(attribute(a, "enabled").toInt() != 0);
    // Elements read after usesPython are reachable from Python by define.
    PythonBridge::expose(define, signalSource);
}

#include "elements/DefineAssignment.h"
#include "elements/PageRevealer.h"

#include "elements/ActiveElement.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/NumberFormat.h"
#include "elements/Reports.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QMetaObject>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTextEdit>
#include <QTreeWidget>

namespace {

// Runs the element's by-user path, as if the user had made the change. An
// element's valueChangedByUser() emits changedByUser() itself.
void runByUserPath(QObject *object)
{
    const QMetaObject *meta = object->metaObject();
    if (meta->indexOfMethod("valueChangedByUser()") >= 0)
        QMetaObject::invokeMethod(object, "valueChangedByUser");
    else if (meta->indexOfSignal("changedByUser()") >= 0)
        QMetaObject::invokeMethod(object, "changedByUser");
}

bool readInteger(const QString &text, qint64 *value)
{
    bool ok = false;
    *value = NumberFormat::toInt64(text, &ok);
    return ok;
}

} // namespace

QString DefineAssignment::unknownDefineText(const QString &define, const QString &line, const QString &link, int lineNumber)
{
    return QStringLiteral("<font color=\"red\"> <b>Script Error: </b></font><b>Unknown define: %1 in line %2 <b><a href=\"%3\">file</a> line %4</b><b><br>")
        .arg(define, line, link)
        .arg(lineNumber);
}

void DefineAssignment::raise(QWidget *widget)
{
    PageRevealer::raisePages(widget);
}

DefineAssignment::Result DefineAssignment::setDefineValue(DocumentTables &tables, const QString &name, const QString &value)
{
    ActiveElement *element = tables.element(name);
    if (!element) {
        if (DataClass *data = tables.dataValue(name)) {
            if (data->datatype == DataClass::Float) {
                bool ok = false;
                const float f = value.toFloat(&ok);
                if (!ok) {
                    Report::cannotUse(QStringLiteral("Set"), name);
                    return Refused;
                }
                data->setFloat(f);
                return Done;
            }
            qint64 v = 0;
            if (!readInteger(value, &v)) {
                Report::cannotUse(QStringLiteral("Set"), name);
                return Refused;
            }
            data->setValue(quint32(v));
            return Done;
        }
        return UnknownDefine;
    }

    QWidget *widget = element->widget();
    // The object with the element's signals: the widget, or for a radio
    // group the group itself.
    QObject *object = dynamic_cast<QObject *>(element);
    if (!widget->isEnabled())
        return Done;
    raise(widget);

    qint64 number = 0;
    if (auto *check = qobject_cast<QCheckBox *>(widget)) {
        if (!readInteger(value, &number)) {
            Report::cannotUse(QStringLiteral("setChecked"), name);
            return Refused;
        }
        if (check->isChecked() != (number == 1)) {
            check->setChecked(number == 1);
            runByUserPath(object);
        }
        return Done;
    }
    if (auto *button = qobject_cast<QPushButton *>(widget)) {
        if (!readInteger(value, &number)) {
            Report::cannotUse(QStringLiteral("setChecked"), name);
            return Refused;
        }
        if (button->isChecked() != (number == 1)) {
            QMetaObject::invokeMethod(button, "setChecked", Q_ARG(bool, number == 1));
            runByUserPath(object);
        }
        return Done;
    }
    if (auto *spin = qobject_cast<QDoubleSpinBox *>(widget)) {
        bool ok = false;
        const double d = value.toDouble(&ok);
        if (!ok) {
            Report::cannotUse(QStringLiteral("setValue"), name);
            return Refused;
        }
        spin->setValue(d);
        runByUserPath(object);
        return Done;
    }
    if (auto *spin = qobject_cast<QSpinBox *>(widget)) {
        if (!readInteger(value, &number)) {
            Report::cannotUse(QStringLiteral("setValue"), name);
            return Refused;
        }
        spin->setValue(int(number));
        runByUserPath(object);
        return Done;
    }
    if (auto *slider = qobject_cast<QAbstractSlider *>(widget)) {
        if (!readInteger(value, &number)) {
            Report::cannotUse(QStringLiteral("setValue"), name);
            return Refused;
        }
        slider->setValue(int(number));
        runByUserPath(object);
        return Done;
    }
    if (auto *combo = qobject_cast<QComboBox *>(widget)) {
        if (!readInteger(value, &number)) {
            Report::cannotUse(QStringLiteral("setItem"), name);
            return Refused;
        }
        if (number < 0 || number >= combo->count()) {
            Report::indexOutOfRange(name, QStringLiteral("setItem"), number, 0, combo->count() - 1);
            return Refused;
        }
        combo->setCurrentIndex(int(number));
        runByUserPath(object);
        return Done;
    }
    if (auto *line = qobject_cast<QLineEdit *>(widget)) {
        line->setText(value);
        runByUserPath(object);
        return Done;
    }
    if (auto *edit = qobject_cast<QTextEdit *>(widget)) {
        edit->setText(value);
        runByUserPath(object);
        return Done;
    }
    // A radio group: its buttons are reached through the group the element
    // keeps as a property, or any QButtonGroup child.
    if (auto *group = widget->findChild<QButtonGroup *>()) {
        const QList<QAbstractButton *> buttons = group->buttons();
        if (!readInteger(value, &number)) {
            Report::cannotUse(QStringLiteral("setRBItem"), name);
            return Refused;
        }
        if (number < 0 || number >= buttons.size()) {
            Report::indexOutOfRange(name, QStringLiteral("setRBItem"), number, 0, buttons.size() - 1);
            return Refused;
        }
        buttons.at(int(number))->setChecked(true);
        runByUserPath(object);
        return Done;
    }
    // A knob is no toolkit slider: it takes the number through its element.
    if (widget->inherits("QwtAbstractSlider")) {
        if (!element->setValue(value, 0))
            return Refused;
        runByUserPath(object);
        return Done;
    }
    Report::cannotUse(QStringLiteral("Set"), name);
    return Refused;
}

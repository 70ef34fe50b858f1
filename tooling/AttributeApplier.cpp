#include "tooling/AttributeApplier.h"

#include "elements/ActiveElement.h"
#include "elements/ButtonGroup.h"
#include "elements/CheckBox.h"
#include "elements/ComboBox.h"
#include "elements/Container.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/GridWidget.h"
#include "elements/GroupBox.h"
#include "elements/Image.h"
#include "elements/Knob.h"
#include "elements/Led.h"
#include "elements/LineEdit.h"
#include "elements/MathLabel.h"
#include "elements/PushButton.h"
#include "elements/Slider.h"
#include "elements/Text.h"
#include "elements/TextEdit.h"
#include "elements/TimerLabel.h"
#include "elements/ToggleButton.h"
#include "model/BitField.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "shell/Document.h"
#include "tooling/AttributeRows.h"
#include "views/MyQwtPlot.h"

#include <QAbstractSpinBox>
#include <QDebug>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QRadioButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTabWidget>
#include <qwt_dial.h>
#include <qwt_thermo.h>

#include <cmath>

namespace {

bool toInt(const QString &text, int *value)
{
    bool ok = false;
    const int v = text.trimmed().toInt(&ok);
    if (ok)
        *value = v;
    return ok;
}

bool toDouble(const QString &text, double *value)
{
    bool ok = false;
    const double v = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(v))
        return false;
    *value = v;
    return true;
}

QString number(double value)
{
    return QString::number(value, 'g', 15);
}

// Properties of an element go through its ActiveElement, so that a radio
// group keeps them on itself and not on its hidden anchor.
void keep(QObject *target, const char *name, const QVariant &value)
{
    if (ActiveElement *element = asActiveElement(target))
        element->setProperty(name, value);
    else
        target->setProperty(name, value);
}

bool hasDynamic(const QObject *object, const char *name)
{
    return object->dynamicPropertyNames().contains(QByteArray(name));
}

// The colour of a gauge or LED row: three decimals, or a colour name the
// toolkit knows.
QColor colorOf(const QString &text)
{
    int rgb[3];
    if (AttributeApplier::parseRgb(text, rgb))
        return QColor(rgb[0], rgb[1], rgb[2]);
    return QColor(text.trimmed());
}

void replaceDependent(QHash<QString, QList<QObject *>> &table, const QString &from, const QString &to,
                      QObject *display)
{
    if (!from.isEmpty()) {
        auto it = table.find(from);
        if (it != table.end()) {
            it->removeAll(display);
            if (it->isEmpty())
                table.erase(it);
        }
    }
    if (!to.isEmpty() && !table[to].contains(display))
        table[to].append(display);
}

// The define a display follows: "name.value" follows "name".
QString feedOf(const QString &data)
{
    const int dot = data.indexOf(QLatin1Char('.'));
    return dot < 0 ? data : data.left(dot);
}

} // namespace

AttributeApplier::AttributeApplier(Document &document)
    : m_document(document)
{
}

bool AttributeApplier::parseRgb(const QString &text, int rgb[3])
{
    const QStringList parts = text.split(QLatin1Char(';'));
    if (parts.size() != 3)
        return false;
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        const int v = parts.at(i).trimmed().toInt(&ok);
        if (!ok || v < 0 || v > 255)
            return false;
        rgb[i] = v;
    }
    return true;
}

bool AttributeApplier::parseRange(const QString &text, double *low, double *high)
{
    const int at = text.indexOf(QLatin1String(".."));
    if (at < 0)
        return false;
    double a = 0;
    double b = 0;
    if (!toDouble(text.left(at), &a) || !toDouble(text.mid(at + 2), &b) || a > b)
        return false;
    *low = a;
    *high = b;
    return true;
}

bool AttributeApplier::parseFlag(const QString &text, bool *flag)
{
    const QString t = text.trimmed().toLower();
    if (t == QLatin1String("true") || t == QLatin1String("1")) {
        *flag = true;
        return true;
    }
    if (t == QLatin1String("false") || t == QLatin1String("0")) {
        *flag = false;
        return true;
    }
    return false;
}

void AttributeApplier::fillBackground(QWidget *widget, int r, int g, int b)
{
    const QColor color(r, g, b);
    QPalette palette = widget->palette();
    if (qobject_cast<QPushButton *>(widget)) {
        palette.setColor(QPalette::Button, color);
        // The form gives plain buttons their colour by style sheet, which
        // outranks the palette; a toggle's sheet holds its state colours.
        if (!qobject_cast<ToggleButton *>(widget))
            widget->setStyleSheet(QStringLiteral("QPushButton{background-color: rgb(%1,%2,%3);}").arg(r).arg(g).arg(b));
    } else {
        palette.setColor(widget->backgroundRole(), color);
        widget->setAutoFillBackground(true);
        if (qobject_cast<QLineEdit *>(widget) || qobject_cast<QComboBox *>(widget))
            widget->setStyleSheet(QStringLiteral("background-color: rgb(%1,%2,%3);").arg(r).arg(g).arg(b));
    }
    widget->setPalette(palette);
}

QString AttributeApplier::svdDescription(const QString &path) const
{
    const QStringList parts = path.trimmed().split(QLatin1Char('.'));
    if (parts.size() != 3)
        return QString();
    const Peripheral *peripheral = m_document.model().findPeripheral(parts.at(0));
    const Register *reg = peripheral ? HardwareModel::findRegister(peripheral, parts.at(1)) : nullptr;
    const BitField *field = reg ? HardwareModel::findField(reg, parts.at(2)) : nullptr;
    return field ? field->description : QString();
}

bool AttributeApplier::rename(QObject *target, const QString &newName)
{
    const QString name = newName.trimmed();
    const QString old = target->objectName();
    if (name == old)
        return true;
    DocumentTables &t = m_document.tables();
    if (name.isEmpty() || t.elements.contains(name) || t.dataValues.contains(name) || t.containers.contains(name)
        || t.leds.contains(name) || t.timers.contains(name) || t.plots.contains(name) || t.dials.contains(name)
        || t.thermos.contains(name) || t.images.contains(name) || t.pushButtons.contains(name))
        return false;

    if (ActiveElement *element = asActiveElement(target)) {
        if (t.elements.value(old) == element) {
            t.elements.remove(old);
            t.elements.insert(name, element);
        }
    }
    if (auto *data = qobject_cast<DataClass *>(target)) {
        if (t.dataValues.value(old) == data) {
            t.dataValues.remove(old);
            t.dataValues.insert(name, data);
        }
    }
    if (Container *container = asContainer(target)) {
        if (t.containers.value(old) == container) {
            t.containers.remove(old);
            t.containers.insert(name, container);
        }
    }
    // Displays are filed under the define they were written with, which
    // need not be their object name: found by the object itself.
    for (QHash<QString, QObject *> *hash : {&t.leds, &t.timers, &t.plots, &t.dials, &t.thermos, &t.images,
                                            &t.pushButtons}) {
        const QStringList keys = hash->keys(target);
        for (const QString &key : keys)
            hash->remove(key);
        if (!keys.isEmpty())
            hash->insert(name, target);
    }
    target->setObjectName(name);
    return true;
}

bool AttributeApplier::apply(QObject *target, const QString &key, const QString &value, QString *shown)
{
    qDebug().noquote().nospace() << "setAttribute(" << key << ", " << value << ")";
    QString result = value;
    bool ok = false;
    if (target) {
        if (key == QLatin1String("Define") || key == QLatin1String("define")) {
            ok = rename(target, value);
            result = target->objectName();
        } else if (QWidget *widget = AttributeRows::widgetOf(target);
                   widget && applyGeometry(widget, key, value, &result)) {
            ok = true;
        } else if (applyPlot(target, key, value)) {
            ok = true;
        } else {
            ok = applyClassSpecific(target, key, value, &result);
        }
    }
    if (!ok && target) {
        // The row shows the widget as it stayed.
        const QStringList rows = AttributeRows::build(target);
        result.clear();
        for (const QString &row : rows) {
            if (AttributeRows::keyOf(row) == key) {
                result = AttributeRows::valueOf(row);
                break;
            }
        }
    }
    if (shown)
        *shown = result;
    return ok;
}

bool AttributeApplier::applyGeometry(QWidget *widget, const QString &key, const QString &value, QString *shown)
{
    if (key == QLatin1String("X") || key == QLatin1String("Y")) {
        int v = 0;
        if (!toInt(value, &v))
            return false;
        const QPoint at = key == QLatin1String("X") ? QPoint(v, widget->y()) : QPoint(widget->x(), v);
        widget->move(at);
        widget->setProperty("Pos", QStringLiteral("%1;%2").arg(at.x()).arg(at.y()));
        *shown = QString::number(v);
        return true;
    }
    if (key == QLatin1String("Width") || key == QLatin1String("Height")) {
        int v = 0;
        // -1 lifts the fixed size of that side; anything else negative is
        // no size.
        if (!toInt(value, &v) || v < -1 || v > QWIDGETSIZE_MAX)
            return false;
        QStringList size = widget->property("Size").toString().split(QLatin1Char(';'));
        if (size.size() != 2)
            size = QStringList{QStringLiteral("-1"), QStringLiteral("-1")};
        const bool width = key == QLatin1String("Width");
        if (width) {
            if (v < 0) {
                widget->setMinimumWidth(0);
                widget->setMaximumWidth(QWIDGETSIZE_MAX);
            } else {
                widget->setFixedWidth(v);
            }
        } else if (v < 0) {
            widget->setMinimumHeight(0);
            widget->setMaximumHeight(QWIDGETSIZE_MAX);
        } else {
            widget->setFixedHeight(v);
        }
        size[width ? 0 : 1] = QString::number(v);
        widget->setProperty("Size", size.join(QLatin1Char(';')));
        *shown = QString::number(v);
        return true;
    }
    if (key == QLatin1String("SizePolH") || key == QLatin1String("SizePolV")) {
        QSizePolicy::Policy policy;
        if (!AttributeRows::policyOfWord(value, &policy))
            return false;
        QSizePolicy sp = widget->sizePolicy();
        if (key == QLatin1String("SizePolH"))
            sp.setHorizontalPolicy(policy);
        else
            sp.setVerticalPolicy(policy);
        widget->setSizePolicy(sp);
        widget->setProperty("Sizepolicy", AttributeRows::policyWord(sp.horizontalPolicy()) + QLatin1Char(';')
                                              + AttributeRows::policyWord(sp.verticalPolicy()));
        *shown = AttributeRows::policyWord(policy);
        return true;
    }
    if (key == QLatin1String("Color")) {
        int rgb[3];
        if (!parseRgb(value, rgb))
            return false;
        fillBackground(widget, rgb[0], rgb[1], rgb[2]);
        *shown = QStringLiteral("%1;%2;%3").arg(rgb[0]).arg(rgb[1]).arg(rgb[2]);
        widget->setProperty("Color", *shown);
        return true;
    }
    if (key == QLatin1String("Font")) {
        QFont font = widget->font();
        if (value.trimmed().isEmpty() || !font.fromString(value.trimmed()))
            return false;
        widget->setFont(font);
        // The widget's own form, as the row will show it next time.
        *shown = widget->font().toString();
        widget->setProperty("my_font", *shown);
        return true;
    }
    return false;
}

bool AttributeApplier::applyPlot(QObject *target, const QString &key, const QString &value)
{
    auto *plot = qobject_cast<MyQwtPlot *>(target);
    if (!plot)
        return false;
    const QByteArray name = key.toLatin1();
    double v = 0;
    if (key == QLatin1String("minX") || key == QLatin1String("maxX") || key == QLatin1String("minY")
        || key == QLatin1String("maxY")) {
        if (!toDouble(value, &v))
            return false;
        if (key == QLatin1String("minX"))
            plot->setMinX(int(v));
        else if (key == QLatin1String("maxX"))
            plot->setMaxX(int(v));
        else if (key == QLatin1String("minY"))
            plot->setMinY(v);
        else
            plot->setMaxY(v);
        plot->setAxes();
    } else if (key == QLatin1String("oszi") || key == QLatin1String("history")) {
        int flag = 0;
        if (!toInt(value, &flag))
            return false;
        if (key == QLatin1String("oszi"))
            plot->setSeriesModes(flag != 0, plot->history());
        else
            plot->setSeriesModes(plot->oszi(), flag != 0);
    } else if (key == QLatin1String("xScaleFormat") || key == QLatin1String("xFactor")) {
        int format = plot->property("xScaleFormat").toInt();
        double factor = plot->property("xFactor").isValid() ? plot->property("xFactor").toDouble() : 1.0;
        if (key == QLatin1String("xScaleFormat") ? !toInt(value, &format) || format < 0 : !toDouble(value, &factor))
            return false;
        plot->setTimeScale(factor, quint16(format));
    } else if (key == QLatin1String("xLabel")) {
        plot->setAxisLabels(value, plot->property("yLabel").toString());
    } else if (key == QLatin1String("yLabel")) {
        plot->setAxisLabels(plot->property("xLabel").toString(), value);
    } else if (key == QLatin1String("autoScaleMinY") || key == QLatin1String("autoScaleMaxY")) {
        int flag = 0;
        if (!toInt(value, &flag))
            return false;
        if (key == QLatin1String("autoScaleMinY"))
            plot->setAutoScale(flag > 0, plot->autoScaleMaxY);
        else
            plot->setAutoScale(plot->autoScaleMinY, flag > 0);
    } else if (key == QLatin1String("grid")) {
        int bits = 0;
        if (!toInt(value, &bits) || bits < 0)
            return false;
        plot->setGrid(bits);
    } else {
        return false;
    }
    plot->setProperty(name.constData(), value.trimmed());
    plot->replot();
    return true;
}

bool AttributeApplier::applyLabel(QObject *target, const QString &value)
{
    bool done = true;
    if (auto *radio = qobject_cast<QRadioButton *>(target))
        radio->setText(value);
    else if (auto *text = qobject_cast<Text *>(target))
        text->setText(value);
    else if (auto *check = qobject_cast<CheckBox *>(target))
        check->setText(value);
    else if (auto *line = qobject_cast<LineEdit *>(target))
        line->setText(value);
    else if (auto *edit = qobject_cast<TextEdit *>(target))
        edit->setPlainText(value);
    else if (auto *button = qobject_cast<QPushButton *>(target))
        button->setText(value);
    else if (auto *group = qobject_cast<GroupBox *>(target))
        group->setTitle(value);
    else if (qobject_cast<MathLabel *>(target))
        keep(target, "my_label", value);
    else
        done = false;

    if (asContainer(target)) {
        keep(target, "my_label", value);
        // A page of a tab container: the stack's parent is the tab widget.
        auto *page = qobject_cast<QWidget *>(target);
        QWidget *stack = page ? page->parentWidget() : nullptr;
        auto *tabs = stack ? qobject_cast<QTabWidget *>(stack->parentWidget()) : nullptr;
        if (tabs && tabs->indexOf(page) >= 0)
            tabs->setTabText(tabs->indexOf(page), value);
        return true;
    }
    if (hasDynamic(AttributeRows::widgetOf(target) ? static_cast<QObject *>(AttributeRows::widgetOf(target)) : target,
                   "my_label")
        || hasDynamic(target, "my_label")) {
        keep(target, "my_label", value);
        done = true;
    }
    return done;
}

bool AttributeApplier::applyFile(QObject *target, const QString &key, const QString &value)
{
    const QString path = QFileInfo(value).isAbsolute() ? value : QDir(m_document.folder()).filePath(value);
    if (key == QLatin1String("File")) {
        auto *image = qobject_cast<Image *>(target);
        if (!image || !image->setPictureFile(path))
            return false;
        image->setProperty("File", value);
        return true;
    }
    if (key == QLatin1String("image")) {
        auto *slider = qobject_cast<Slider *>(target);
        if (!slider || !QFileInfo::exists(path))
            return false;
        slider->setStyleSheet(
            QStringLiteral("QSlider::groove:horizontal {background-image:url(%1); max-height: 20px;}").arg(path));
        static_cast<QObject *>(slider)->setProperty("image", value);
        return true;
    }
    if (key == QLatin1String("Icon")) {
        auto *button = qobject_cast<PushButton *>(target);
        if (!button || !button->setIconFile(path))
            return false;
        button->setProperty("Icon", value);
        return true;
    }
    return false;
}

void AttributeApplier::moveDependent(QObject *display, const QString &oldData, const QString &newData)
{
    DocumentTables &t = m_document.tables();
    if (qobject_cast<Led *>(display))
        replaceDependent(t.ledDependents, feedOf(oldData), feedOf(newData), display);
    else if (qobject_cast<QwtDial *>(display))
        replaceDependent(t.dialDependents, feedOf(oldData), feedOf(newData), display);
    else if (qobject_cast<QwtThermo *>(display))
        replaceDependent(t.thermoDependents, feedOf(oldData), feedOf(newData), display);
}

bool AttributeApplier::applyClassSpecific(QObject *target, const QString &key, const QString &value, QString *shown)
{
    const QString trimmed = value.trimmed();
    if (key == QLatin1String("Label"))
        return applyLabel(target, value);

    if (key == QLatin1String("default")) {
        keep(target, "my_default", trimmed);
        return true;
    }
    if (key == QLatin1String("header")) {
        keep(target, "header", trimmed);
        return true;
    }
    if (key == QLatin1String("svd")) {
        keep(target, "my_svd", trimmed);
        keep(target, "svd", trimmed);
        if (QWidget *widget = AttributeRows::widgetOf(target)) {
            const QString description = svdDescription(trimmed);
            if (!description.isEmpty())
                widget->setToolTip(description);
        }
        return true;
    }
    if (key == QLatin1String("Readonly")) {
        bool readOnly = false;
        if (!parseFlag(value, &readOnly))
            return false;
        if (auto *line = qobject_cast<QLineEdit *>(target))
            line->setReadOnly(readOnly);
        else if (auto *edit = qobject_cast<QTextEdit *>(target))
            edit->setReadOnly(readOnly);
        else if (auto *group = qobject_cast<ButtonGroup *>(target))
            group->setReadOnly(readOnly);
        else if (auto *widget = qobject_cast<QWidget *>(target)) {
            // What the reader does to lists, flags and numbers: no mouse,
            // no focus.
            widget->setAttribute(Qt::WA_TransparentForMouseEvents, readOnly);
            widget->setFocusPolicy(readOnly ? Qt::NoFocus : Qt::StrongFocus);
        } else
            return false;
        keep(target, "my_readonly", trimmed);
        return true;
    }
    if (key == QLatin1String("Prefix") || key == QLatin1String("Suffix")) {
        const bool prefix = key == QLatin1String("Prefix");
        if (auto *spin = qobject_cast<QSpinBox *>(target))
            prefix ? spin->setPrefix(value) : spin->setSuffix(value);
        else if (auto *dspin = qobject_cast<QDoubleSpinBox *>(target))
            prefix ? dspin->setPrefix(value) : dspin->setSuffix(value);
        else
            return false;
        keep(target, prefix ? "prefix" : "suffix", value);
        return true;
    }
    if (key == QLatin1String("Range")) {
        double low = 0;
        double high = 0;
        if (!parseRange(value, &low, &high))
            return false;
        if (auto *spin = qobject_cast<QSpinBox *>(target)) {
            if (low != std::floor(low) || high != std::floor(high) || low < INT_MIN || high > INT_MAX)
                return false;
            spin->setRange(int(low), int(high));
        } else if (auto *dspin = qobject_cast<QDoubleSpinBox *>(target)) {
            dspin->setRange(low, high);
        } else if (auto *knob = qobject_cast<Knob *>(target)) {
            knob->setRange(low, high);
        } else if (auto *dial = qobject_cast<QwtDial *>(target)) {
            dial->setScale(low, high);
            dial->setProperty("min", number(low));
            dial->setProperty("max", number(high));
        } else if (auto *thermo = qobject_cast<QwtThermo *>(target)) {
            thermo->setScale(low, high);
            thermo->setProperty("min", number(low));
            thermo->setProperty("max", number(high));
        } else {
            return false;
        }
        *shown = QStringLiteral("%1..%2").arg(number(low), number(high));
        return true;
    }
    if (key == QLatin1String("Step")) {
        double step = 0;
        if (!toDouble(value, &step) || step <= 0)
            return false;
        if (auto *spin = qobject_cast<QSpinBox *>(target)) {
            if (step != std::floor(step))
                return false;
            spin->setSingleStep(int(step));
        } else if (auto *dspin = qobject_cast<QDoubleSpinBox *>(target)) {
            dspin->setSingleStep(step);
        } else if (auto *knob = qobject_cast<Knob *>(target)) {
            knob->setStep(step);
        } else {
            return false;
        }
        *shown = number(step);
        return true;
    }
    if (auto *math = qobject_cast<MathLabel *>(target)) {
        if (key == QLatin1String("Format")) {
            const QString before = QString::fromUtf8(math->format());
            if (!math->setFormat(trimmed)) {
                math->setFormat(before);
                return false;
            }
            static_cast<QObject *>(math)->setProperty("format", trimmed);
            return true;
        }
        if (key == QLatin1String("Expression")) {
            QString clean = value;
            clean.remove(QRegularExpression(QStringLiteral("\\s")));
            if (clean.isEmpty())
                return false;
            DocumentTables &t = m_document.tables();
            for (const QString &operand : qAsConst(math->names))
                replaceDependent(t.mathDependents, operand, QString(), math);
            math->setFormula(clean);
            for (const QString &operand : qAsConst(math->names))
                replaceDependent(t.mathDependents, QString(), operand, math);
            static_cast<QObject *>(math)->setProperty("expression", value);
            static_cast<QObject *>(math)->setProperty("formula", value);
            return true;
        }
        if (key == QLatin1String("Unit")) {
            static_cast<QObject *>(math)->setProperty("suffix", value);
            return true;
        }
    }
    if (auto *timer = qobject_cast<TimerLabel *>(target)) {
        int v = 0;
        if (key == QLatin1String("run") || key == QLatin1String("singleShot") || key == QLatin1String("interval")) {
            if (!toInt(value, &v) || v < 0)
                return false;
            if (key == QLatin1String("run")) {
                timer->setRun(v);
                v != 0 ? timer->start() : timer->stop();
            } else if (key == QLatin1String("singleShot")) {
                timer->setSingleShot(v);
            } else {
                timer->setInterval(v);
            }
            static_cast<QObject *>(timer)->setProperty(key.toLatin1().constData(), QString::number(v));
            *shown = QString::number(v);
            return true;
        }
    }
    if (key == QLatin1String("data") || key == QLatin1String("bitmask")) {
        if (auto *led = qobject_cast<Led *>(target)) {
            const QString before = led->watchedDefine();
            if (key == QLatin1String("data")) {
                led->watch(trimmed, led->property("bitmask").toString());
                moveDependent(led, before, trimmed);
            } else {
                led->watch(before, trimmed);
            }
            return true;
        }
        if (key == QLatin1String("data") && (qobject_cast<QwtDial *>(target) || qobject_cast<QwtThermo *>(target))) {
            moveDependent(target, target->property("data").toString(), trimmed);
            target->setProperty("data", trimmed);
            return true;
        }
        if (!hasDynamic(target, key.toLatin1().constData()))
            return false;
        target->setProperty(key.toLatin1().constData(), trimmed);
        return true;
    }
    if (key == QLatin1String("OnColor") || key == QLatin1String("OffColor")) {
        const bool on = key == QLatin1String("OnColor");
        if (auto *led = qobject_cast<Led *>(target)) {
            int rgb[3];
            if (!parseRgb(trimmed, rgb) && !Led::colorWords().contains(trimmed))
                return false;
            on ? led->setOnColor(trimmed) : led->setOffColor(trimmed);
            led->setProperty(on ? "OnColor" : "OffColor", trimmed);
            return true;
        }
        if (auto *toggle = qobject_cast<ToggleButton *>(target)) {
            int rgb[3];
            if (!parseRgb(trimmed, rgb))
                return false;
            static_cast<QObject *>(toggle)->setProperty(on ? "OnColor" : "OffColor", trimmed);
            QString onRgb = static_cast<QObject *>(toggle)->property("OnColor").toString();
            QString offRgb = static_cast<QObject *>(toggle)->property("OffColor").toString();
            toggle->setColors(offRgb.replace(QLatin1Char(';'), QLatin1Char(',')),
                              onRgb.replace(QLatin1Char(';'), QLatin1Char(',')));
            return true;
        }
        return false;
    }
    if (key == QLatin1String("inverted")) {
        bool flag = false;
        if (!parseFlag(value, &flag))
            return false;
        keep(target, "inverted", flag ? QStringLiteral("true") : QStringLiteral("false"));
        *shown = flag ? QStringLiteral("true") : QStringLiteral("false");
        return true;
    }
    if (key == QLatin1String("NrColumns")) {
        auto *grid = qobject_cast<GridWidget *>(target);
        int columns = 0;
        if (!grid || !toInt(value, &columns) || columns < 1)
            return false;
        grid->relayout(columns);
        return true;
    }
    if (key == QLatin1String("orientation")) {
        int o = 0;
        if (!toInt(value, &o) || o < 0 || o > 1)
            return false;
        if (auto *thermo = qobject_cast<QwtThermo *>(target))
            thermo->setOrientation(o == 0 ? Qt::Vertical : Qt::Horizontal);
        else if (auto *slider = qobject_cast<Slider *>(target))
            slider->setOrientation(o == 0 ? Qt::Horizontal : Qt::Vertical);
        else
            return false;
        // A thermo's own `orientation` is a static property; the text is
        // kept beside it under the same name only where that is free.
        if (target->metaObject()->indexOfProperty("orientation") < 0)
            target->setProperty("orientation", o);
        return true;
    }
    if (auto *thermo = qobject_cast<QwtThermo *>(target)) {
        if (key == QLatin1String("alarmlevel")) {
            double level = 0;
            if (!toDouble(value, &level))
                return false;
            thermo->setAlarmLevel(level);
            thermo->setProperty("alarmlevel", trimmed);
            return true;
        }
        if (key == QLatin1String("normalcolor") || key == QLatin1String("alarmcolor")) {
            const QColor color = colorOf(trimmed);
            if (!color.isValid())
                return false;
            QPalette palette = thermo->palette();
            palette.setColor(key == QLatin1String("normalcolor") ? QPalette::ButtonText : QPalette::Highlight, color);
            thermo->setPalette(palette);
            thermo->setProperty(key.toLatin1().constData(), trimmed);
            return true;
        }
    }
    if (key == QLatin1String("File") || key == QLatin1String("image") || key == QLatin1String("Icon"))
        return applyFile(target, key, trimmed);
    return false;
}

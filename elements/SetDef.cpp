#include "elements/SetDef.h"

#include "elements/ActiveElement.h"
#include "elements/ButtonGroup.h"
#include "elements/Container.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/DoubleSpinBox.h"
#include "elements/ItemLookup.h"
#include "elements/Knob.h"
#include "elements/MessageSink.h"
#include "elements/NumberFormat.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"
#include "elements/Slider.h"
#include "elements/SpinBox.h"
#include "elements/ToggleButton.h"
#include "model/LockEngine.h"
#include "views/GaugeCommands.h"

#include <QAbstractButton>
#include <QTabWidget>
#include <QWidget>

#include <cmath>

namespace {

bool g_trace = false;

QString rgbText(quint32 rgb)
{
    return QStringLiteral("%1,%2,%3").arg((rgb >> 16) & 0xff).arg((rgb >> 8) & 0xff).arg(rgb & 0xff);
}

bool readNumber(const QString &text, quint32 *value)
{
    qint64 v = 0;
    if (!ItemLookup::integer(text.trimmed(), &v))
        return false;
    *value = quint32(v);
    return true;
}

// The tab a page sits in (a page's parent is the tab's internal stack).
QTabWidget *tabOfPage(QWidget *page)
{
    QWidget *stack = page->parentWidget();
    return qobject_cast<QTabWidget *>(stack ? stack->parentWidget() : nullptr);
}

// A tab page is hidden by taking it out of its tab; it remembers where it
// stood and its title, so it can go back to the same place.
void setPageVisible(QWidget *page, bool visible)
{
    if (!visible) {
        QTabWidget *tab = tabOfPage(page);
        if (!tab)
            return;
        const int index = tab->indexOf(page);
        if (index < 0)
            return;
        page->setProperty("pageTab", QVariant::fromValue<QObject *>(tab));
        page->setProperty("pageIndex", index);
        page->setProperty("pageTitle", tab->tabText(index));
        page->setProperty("pageToolTip", tab->tabToolTip(index));
        tab->removeTab(index);
        page->hide();
        return;
    }
    auto *tab = qobject_cast<QTabWidget *>(page->property("pageTab").value<QObject *>());
    if (!tab || tab->indexOf(page) >= 0)
        return;
    const int index = qBound(0, page->property("pageIndex").toInt(), tab->count());
    const int at = tab->insertTab(index, page, page->property("pageTitle").toString());
    tab->setTabToolTip(at, page->property("pageToolTip").toString());
}

bool isNumericElement(QWidget *widget)
{
    return qobject_cast<SpinBox *>(widget) || qobject_cast<DoubleSpinBox *>(widget) || qobject_cast<Slider *>(widget)
        || qobject_cast<Knob *>(widget);
}

void setBound(QWidget *widget, int kind, double bound)
{
    const bool isMin = kind == Selectors::Min;
    if (auto *spin = qobject_cast<SpinBox *>(widget)) {
        isMin ? spin->setMinimum(int(bound)) : spin->setMaximum(int(bound));
        spin->updateToolTip();
    } else if (auto *dspin = qobject_cast<DoubleSpinBox *>(widget)) {
        isMin ? dspin->setMinimum(bound) : dspin->setMaximum(bound);
        dspin->updateToolTip();
    } else if (auto *slider = qobject_cast<Slider *>(widget)) {
        isMin ? slider->setMinimum(int(bound)) : slider->setMaximum(int(bound));
        slider->updateToolTip();
    } else if (auto *knob = qobject_cast<Knob *>(widget)) {
        isMin ? knob->setRange(bound, knob->upperBound()) : knob->setRange(knob->lowerBound(), bound);
        knob->updateToolTip();
    }
}

// The operations every kind of target widget shares.
bool applyCommonSelector(QWidget *widget, int kind, const QString &text)
{
    quint32 number = 0;
    switch (kind) {
    case Selectors::Visible:
        if (!readNumber(text, &number))
            return false;
        widget->setVisible(number != 0);
        return true;
    case Selectors::Enabled:
        if (!readNumber(text, &number))
            return false;
        widget->setEnabled(number != 0);
        return true;
    case Selectors::X:
        if (!readNumber(text, &number))
            return false;
        widget->move(int(qint32(number)), widget->y());
        return true;
    case Selectors::Y:
        if (!readNumber(text, &number))
            return false;
        widget->move(widget->x(), int(qint32(number)));
        return true;
    default:
        return false;
    }
}

void applyToElement(ActiveElement *element, int kind, const QString &text)
{
    QWidget *widget = element->widget();
    auto *group = dynamic_cast<ButtonGroup *>(element);
    quint32 number = 0;
    switch (kind) {
    case Selectors::Color:
        if (auto *toggle = dynamic_cast<ToggleButton *>(element)) {
            toggle->setValue(text, Selectors::Color);
        } else if (readNumber(text, &number)) {
            if (group) {
                for (QAbstractButton *b : group->buttons())
                    SetDef::setBackgroundColor(b, number);
            } else {
                SetDef::setBackgroundColor(widget, number);
            }
        } else {
            Report::invalidSetDef(text);
        }
        return;
    case Selectors::TextColor:
        if (!readNumber(text, &number)) {
            Report::invalidSetDef(text);
        } else if (group) {
            for (QAbstractButton *b : group->buttons())
                SetDef::setTextColor(b, number);
        } else {
            SetDef::setTextColor(widget, number);
        }
        return;
    case Selectors::Visible:
    case Selectors::Enabled:
        if (group) {
            if (!readNumber(text, &number)) {
                Report::invalidSetDef(text);
                return;
            }
            for (QAbstractButton *b : group->buttons())
                kind == Selectors::Visible ? b->setVisible(number != 0) : b->setEnabled(number != 0);
            return;
        }
        if (!applyCommonSelector(widget, kind, text))
            Report::invalidSetDef(text);
        return;
    case Selectors::X:
    case Selectors::Y:
        if (!applyCommonSelector(widget, kind, text))
            Report::invalidSetDef(text);
        return;
    case Selectors::Min:
    case Selectors::Max:
        if (isNumericElement(widget)) {
            double bound = 0;
            if (!SpinBox::numberOf(text, true, &bound)) {
                Report::invalidSetDef(text);
                return;
            }
            double value = 0, low = 0, high = 0;
            // A spin box moved by its new range is reported (once per burst).
            const bool known = (qobject_cast<SpinBox *>(widget) || qobject_cast<DoubleSpinBox *>(widget))
                && LockEngine::rangeState(widget, &value, &low, &high);
            setBound(widget, kind, bound);
            if (known)
                LockEngine::noteRangeChange(widget, value, low, high);
            return;
        }
        element->setValue(text, kind);
        return;
    default:
        element->setValue(text, kind);
        return;
    }
}

bool applyToWidget(QWidget *widget, int kind, const QString &text, bool isContainer)
{
    quint32 number = 0;
    if (kind == Selectors::Color) {
        if (!readNumber(text, &number))
            return false;
        if (qobject_cast<QAbstractButton *>(widget))
            widget->setStyleSheet(QStringLiteral("QPushButton{background-color: rgb(%1);}QPushButton:checked{background-color: rgb(%1);}")
                                      .arg(rgbText(number)));
        else
            SetDef::setBackgroundColor(widget, number);
        return true;
    }
    if (kind == Selectors::Visible && isContainer && (tabOfPage(widget) || widget->property("pageTab").isValid())) {
        if (!readNumber(text, &number))
            return false;
        setPageVisible(widget, number != 0);
        return true;
    }
    if (kind == Selectors::Image || kind == Selectors::Save) {
        // Pictures and buttons load their files themselves.
        const char *method = kind == Selectors::Image ? "setPicture" : "savePicture";
        return QMetaObject::invokeMethod(widget, method, Q_ARG(QString, text));
    }
    if (kind == Selectors::Update) {
        widget->update();
        return true;
    }
    return applyCommonSelector(widget, kind, text);
}

} // namespace

void SetDef::setTrace(bool on)
{
    g_trace = on;
}

bool SetDef::trace()
{
    return g_trace;
}

void SetDef::setBackgroundColor(QWidget *widget, quint32 rgb)
{
    QPalette palette = widget->palette();
    const QColor color(QRgb(rgb & 0xffffff));
    palette.setColor(widget->backgroundRole(), color);
    // Edits and lists paint their field with the base colour.
    palette.setColor(QPalette::Base, color);
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

void SetDef::setTextColor(QWidget *widget, quint32 rgb)
{
    QPalette palette = widget->palette();
    palette.setColor(widget->foregroundRole(), QColor(QRgb(rgb & 0xffffff)));
    palette.setColor(QPalette::Text, QColor(QRgb(rgb & 0xffffff)));
    palette.setColor(QPalette::ButtonText, QColor(QRgb(rgb & 0xffffff)));
    widget->setPalette(palette);
}

bool SetDef::run(const QString &text, DocumentTables *given)
{
    if (g_trace)
        consolePrint(QStringLiteral("setDef(%1)<br>").arg(text));
    DocumentTables *tables = given ? given : DocumentTables::current();
    if (!tables)
        return false;
    // Parts run in order; a malformed one stops the rest of the text, the
    // parts before it stay done.
    for (const QString &part : text.split(QLatin1Char(';'))) {
        // "a=1;" ends in an empty part, which asks for nothing.
        if (part.trimmed().isEmpty())
            continue;
        if (part.split(QLatin1Char('=')).size() != 2) {
            Report::invalidSetDef(part);
            return false;
        }
        if (!runPart(*tables, part))
            return false;
    }
    return true;
}

bool SetDef::runPart(DocumentTables &tables, const QString &part)
{
    const QStringList sides = part.split(QLatin1Char('='));
    const QString target = sides.at(0).trimmed();
    QString source = sides.at(1).trimmed();

    const int dot = target.lastIndexOf(QLatin1Char('.'));
    const QString owner = dot > 0 ? target.left(dot) : QString();
    ActiveElement *targetElement = tables.element(target);
    ActiveElement *ownerElement = targetElement ? nullptr : (dot > 0 ? tables.element(owner) : nullptr);
    const QString classWord = targetElement ? targetElement->typeInfo()
                                            : (ownerElement ? ownerElement->typeInfo() : QString());

    if (classWord != QLatin1String("Table") && classWord != QLatin1String("RegView")
        && target != QLatin1String("$PERIPHERALS$")) {
        if (ActiveElement *element = tables.element(source)) {
            source = element->value(Selectors::Value);
        } else if (Selectors::hasSelector(source)
                   && tables.element(Selectors::stripSelector(source))) {
            const QString value = tables.element(Selectors::stripSelector(source))->value(Selectors::selectorKind(source));
            if (targetElement) {
                targetElement->setValue(value, Selectors::Value);
                return true;
            }
            source = value;
        } else if (DataClass *data = tables.dataValue(source)) {
            source = data->datatype == DataClass::Float ? QString::number(double(data->getFloat()), 'g', 6)
                                                        : QString::number(data->getValue());
        } else {
            source = NumberFormat::normaliseNumber(source);
        }
    }

    if (DataClass *data = tables.dataValue(target)) {
        if (data->datatype == DataClass::Float) {
            bool ok = false;
            const float f = source.toFloat(&ok);
            if (!ok) {
                Report::invalidSetDef(part);
                return true;
            }
            data->setFloat(f);
            return true;
        }
        bool ok = false;
        qint64 v = 0;
        if (source.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
            v = qint64(source.mid(2).toULongLong(&ok, 16));
        else
            v = source.toLongLong(&ok, 10);
        if (!ok) {
            const double d = source.toDouble(&ok);
            v = qint64(std::trunc(d));
        }
        if (!ok) {
            Report::invalidSetDef(part);
            return true;
        }
        data->setValue(quint32(v));
        return true;
    }

    if (targetElement) {
        targetElement->setValue(source, Selectors::Value);
        targetElement->loadValue(source);
        return true;
    }

    if (dot > 0) {
        const int kind = Selectors::selectorKind(target);
        if (ownerElement) {
            applyToElement(ownerElement, kind, source);
            return true;
        }
        // Plots and dials take words of their own (reset, maxX, a dial's bounds).
        const GaugeCommands::Result gauge = GaugeCommands::run(tables, owner, target.mid(dot + 1), source);
        if (gauge == GaugeCommands::Invalid)
            Report::invalidSetDef(part);
        if (gauge != GaugeCommands::NotMine)
            return true;
        const QHash<QString, QObject *> *displays[] = {&tables.images, &tables.leds, &tables.dials, &tables.thermos};
        for (const QHash<QString, QObject *> *table : displays) {
            if (auto *widget = qobject_cast<QWidget *>(table->value(owner))) {
                if (!applyToWidget(widget, kind, source, false))
                    Report::invalidSetDef(part);
                return true;
            }
        }
        if (Container *container = tables.container(owner)) {
            if (QWidget *widget = dynamic_cast<QWidget *>(container)) {
                if (!applyToWidget(widget, kind, source, true))
                    Report::invalidSetDef(part);
                return true;
            }
        }
        for (const QHash<QString, QObject *> *table : {&tables.pushButtons, &tables.plots}) {
            if (auto *widget = qobject_cast<QWidget *>(table->value(owner))) {
                if (!applyToWidget(widget, kind, source, false))
                    Report::invalidSetDef(part);
                return true;
            }
        }
    }
    Report::invalidSetDef(part);
    return false;
}

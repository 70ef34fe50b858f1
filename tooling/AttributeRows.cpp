#include "tooling/AttributeRows.h"

#include "elements/ActiveElement.h"
#include "elements/ButtonGroup.h"
#include "elements/CheckBox.h"
#include "elements/ComboBox.h"
#include "elements/Container.h"
#include "elements/DoubleSpinBox.h"
#include "elements/GridWidget.h"
#include "elements/Image.h"
#include "elements/Knob.h"
#include "elements/Led.h"
#include "elements/LineEdit.h"
#include "elements/MathLabel.h"
#include "elements/PushButton.h"
#include "elements/SpinBox.h"
#include "elements/Text.h"
#include "elements/TextEdit.h"
#include "elements/TimerLabel.h"
#include "elements/ToggleButton.h"
#include "views/MyQwtPlot.h"
#include "views/Table.h"

#include <QRadioButton>
#include <qwt_dial.h>
#include <qwt_thermo.h>

namespace {

const char *const kDetails = "<Doubleclick for details>";

// Dynamic properties that get a row of their own when an object has them,
// with the key the row shows.
struct PropertyRow
{
    const char *key;
    const char *property;
};

const PropertyRow kPropertyRows[] = {
    {"Label", "my_label"},           {"default", "my_default"},         {"header", "header"},
    {"svd", "my_svd"},               {"minX", "minX"},                  {"maxX", "maxX"},
    {"minY", "minY"},                {"maxY", "maxY"},                  {"oszi", "oszi"},
    {"history", "history"},          {"xScaleFormat", "xScaleFormat"},  {"xLabel", "xLabel"},
    {"yLabel", "yLabel"},            {"autoScaleMinY", "autoScaleMinY"}, {"autoScaleMaxY", "autoScaleMaxY"},
    {"xFactor", "xFactor"},          {"grid", "grid"},                  {"Readonly", "my_readonly"},
    {"inverted", "inverted"},        {"image", "image"},                {"Icon", "Icon"},
    {"normalcolor", "normalcolor"},  {"alarmcolor", "alarmcolor"},      {"alarmlevel", "alarmlevel"},
    {"orientation", "orientation"},
};

bool hasDynamic(const QObject *object, const char *name)
{
    return object->dynamicPropertyNames().contains(QByteArray(name));
}

QString text(const QObject *object, const char *name)
{
    return object->property(name).toString();
}

QString number(double value)
{
    return QString::number(value, 'g', 15);
}

// Keeps the first row of each key: a label shown from the widget's text
// and again from `my_label` would otherwise be edited twice.
class Rows
{
public:
    void add(const QString &key, const QString &value)
    {
        if (m_keys.contains(key))
            return;
        m_keys << key;
        m_rows << key + QLatin1Char('!') + value;
    }
    QStringList rows() const { return m_rows; }

private:
    QStringList m_keys;
    QStringList m_rows;
};

} // namespace

QString AttributeRows::keyOf(const QString &row)
{
    const int at = row.indexOf(QLatin1Char('!'));
    return at < 0 ? row : row.left(at);
}

QString AttributeRows::valueOf(const QString &row)
{
    const int at = row.indexOf(QLatin1Char('!'));
    return at < 0 ? QString() : row.mid(at + 1);
}

QString AttributeRows::policyWord(QSizePolicy::Policy policy)
{
    switch (policy) {
    case QSizePolicy::Fixed: return QStringLiteral("fixed");
    case QSizePolicy::Minimum: return QStringLiteral("minimum");
    case QSizePolicy::MinimumExpanding: return QStringLiteral("minimumexpanding");
    case QSizePolicy::Maximum: return QStringLiteral("maximum");
    case QSizePolicy::Preferred: return QStringLiteral("preferred");
    case QSizePolicy::Expanding: return QStringLiteral("expanding");
    case QSizePolicy::Ignored: return QStringLiteral("ignored");
    }
    return QString();
}

bool AttributeRows::policyOfWord(const QString &word, QSizePolicy::Policy *policy)
{
    static const QSizePolicy::Policy all[] = {QSizePolicy::Fixed,     QSizePolicy::Minimum,
                                              QSizePolicy::MinimumExpanding, QSizePolicy::Maximum,
                                              QSizePolicy::Preferred, QSizePolicy::Expanding,
                                              QSizePolicy::Ignored};
    const QString wanted = word.trimmed().toLower();
    for (QSizePolicy::Policy p : all) {
        if (policyWord(p) == wanted) {
            *policy = p;
            return true;
        }
    }
    return false;
}

QStringList AttributeRows::policyWords()
{
    return {QStringLiteral("fixed"),     QStringLiteral("expanding"), QStringLiteral("minimum"),
            QStringLiteral("maximum"),   QStringLiteral("preferred"), QStringLiteral("minimumexpanding"),
            QStringLiteral("ignored")};
}

QWidget *AttributeRows::widgetOf(QObject *target)
{
    if (auto *group = qobject_cast<ButtonGroup *>(target))
        return group->widget();
    return qobject_cast<QWidget *>(target);
}

QString AttributeRows::colorText(const QWidget *widget)
{
    const QPalette::ColorRole role =
        qobject_cast<const QPushButton *>(widget) ? QPalette::Button : widget->backgroundRole();
    const QColor c = widget->palette().color(role);
    return QStringLiteral("%1;%2;%3").arg(c.red()).arg(c.green()).arg(c.blue());
}

QStringList AttributeRows::build(QObject *target)
{
    if (!target)
        return {};
    Rows rows;
    ActiveElement *element = asActiveElement(target);
    rows.add(element ? QStringLiteral("Define") : QStringLiteral("define"), target->objectName());

    if (auto *radio = qobject_cast<QRadioButton *>(target))
        rows.add(QStringLiteral("Label"), radio->text());
    else if (auto *label = qobject_cast<Text *>(target))
        rows.add(QStringLiteral("Label"), label->text());
    else if (auto *check = qobject_cast<CheckBox *>(target))
        rows.add(QStringLiteral("Label"), check->text());
    else if (auto *line = qobject_cast<LineEdit *>(target))
        rows.add(QStringLiteral("Label"), line->text());
    else if (auto *edit = qobject_cast<TextEdit *>(target))
        rows.add(QStringLiteral("Label"), edit->toPlainText());
    else if (auto *button = qobject_cast<PushButton *>(target))
        rows.add(QStringLiteral("Label"), button->text());
    else if (auto *toggle = qobject_cast<ToggleButton *>(target))
        rows.add(QStringLiteral("Label"), toggle->text());

    if (qobject_cast<ToggleButton *>(target)) {
        rows.add(QStringLiteral("OnColor"), text(target, "OnColor"));
        rows.add(QStringLiteral("OffColor"), text(target, "OffColor"));
    }
    if (qobject_cast<ComboBox *>(target))
        rows.add(QStringLiteral("Items"), QLatin1String(kDetails));
    if (auto *math = qobject_cast<MathLabel *>(target)) {
        rows.add(QStringLiteral("Label"), text(target, "my_label"));
        rows.add(QStringLiteral("Format"), QString::fromUtf8(math->format()));
        rows.add(QStringLiteral("Expression"), text(target, "expression"));
        rows.add(QStringLiteral("Unit"), text(target, "suffix"));
    }
    if (auto *spin = qobject_cast<QSpinBox *>(target)) {
        rows.add(QStringLiteral("Prefix"), spin->prefix());
        rows.add(QStringLiteral("Suffix"), spin->suffix());
        rows.add(QStringLiteral("Range"), QStringLiteral("%1..%2").arg(spin->minimum()).arg(spin->maximum()));
        rows.add(QStringLiteral("Step"), QString::number(spin->singleStep()));
    } else if (auto *dspin = qobject_cast<QDoubleSpinBox *>(target)) {
        rows.add(QStringLiteral("Prefix"), dspin->prefix());
        rows.add(QStringLiteral("Suffix"), dspin->suffix());
        rows.add(QStringLiteral("Range"), QStringLiteral("%1..%2").arg(number(dspin->minimum()), number(dspin->maximum())));
        rows.add(QStringLiteral("Step"), number(dspin->singleStep()));
    }
    if (auto *knob = qobject_cast<Knob *>(target)) {
        rows.add(QStringLiteral("Range"), QStringLiteral("%1..%2").arg(number(knob->lowerBound()), number(knob->upperBound())));
        rows.add(QStringLiteral("Step"), number(knob->step()));
    }
    if (auto *dial = qobject_cast<QwtDial *>(target))
        rows.add(QStringLiteral("Range"), QStringLiteral("%1..%2").arg(number(dial->lowerBound()), number(dial->upperBound())));
    if (auto *thermo = qobject_cast<QwtThermo *>(target))
        rows.add(QStringLiteral("Range"), QStringLiteral("%1..%2").arg(number(thermo->lowerBound()), number(thermo->upperBound())));
    if (auto *grid = qobject_cast<GridWidget *>(target))
        rows.add(QStringLiteral("NrColumns"), QString::number(grid->columns()));
    if (qobject_cast<Image *>(target))
        rows.add(QStringLiteral("File"), text(target, "File"));
    if (auto *timer = qobject_cast<TimerLabel *>(target)) {
        rows.add(QStringLiteral("run"), QString::number(timer->run()));
        rows.add(QStringLiteral("singleShot"), QString::number(timer->singleShot()));
        rows.add(QStringLiteral("interval"), QString::number(timer->interval()));
    }
    if (auto *led = qobject_cast<Led *>(target)) {
        rows.add(QStringLiteral("data"), hasDynamic(led, "data") ? text(led, "data") : led->watchedDefine());
        rows.add(QStringLiteral("bitmask"), text(led, "bitmask"));
        rows.add(QStringLiteral("OnColor"), hasDynamic(led, "OnColor") ? text(led, "OnColor") : led->onColor());
        rows.add(QStringLiteral("OffColor"), hasDynamic(led, "OffColor") ? text(led, "OffColor") : led->offColor());
    }
    if (qobject_cast<QwtDial *>(target) || qobject_cast<QwtThermo *>(target))
        rows.add(QStringLiteral("data"), text(target, "data"));
    if (qobject_cast<MyQwtPlot *>(target))
        rows.add(QStringLiteral("Curves"), QLatin1String(kDetails));
    if (qobject_cast<Table *>(target))
        rows.add(QStringLiteral("Columns"), QLatin1String(kDetails));
    if (hasDynamic(target, "suffix"))
        rows.add(QStringLiteral("suffix"), text(target, "suffix"));
    for (const PropertyRow &row : kPropertyRows) {
        if (hasDynamic(target, row.property))
            rows.add(QLatin1String(row.key), text(target, row.property));
    }
    const bool hasActions = (element && !asContainer(target)) || qobject_cast<PushButton *>(target);
    if (hasActions)
        rows.add(QStringLiteral("action"), QLatin1String(kDetails));

    // A radio group stands in the form through its buttons; its anchor is
    // hidden and has no place worth editing.
    QWidget *widget = qobject_cast<QWidget *>(target);
    if (widget) {
        rows.add(QStringLiteral("X"), QString::number(widget->x()));
        rows.add(QStringLiteral("Y"), QString::number(widget->y()));
        rows.add(QStringLiteral("Width"), QString::number(widget->width()));
        rows.add(QStringLiteral("Height"), QString::number(widget->height()));
        rows.add(QStringLiteral("SizePolH"), policyWord(widget->sizePolicy().horizontalPolicy()));
        rows.add(QStringLiteral("SizePolV"), policyWord(widget->sizePolicy().verticalPolicy()));
        rows.add(QStringLiteral("Color"), colorText(widget));
        rows.add(QStringLiteral("Font"), widget->font().toString());
    }
    return rows.rows();
}

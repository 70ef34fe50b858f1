#include "model/LockCheck.h"

#include "elements/ActiveElement.h"
#include "elements/ButtonGroup.h"
#include "elements/DocumentTables.h"
#include "elements/MessageSink.h"
#include "elements/NumberFormat.h"
#include "elements/Selectors.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QComboBox>
#include <QRegularExpression>
#include <QVariantMap>
#include <QWidget>
#include <algorithm>

namespace {

const QString kXmlError = QStringLiteral("<font color=\"red\"> <b>XML Error: </b></font><b>");

// Hand-written descriptions with many crossing locks must not keep the
// load busy: the walk gives up on chains longer than this.
const int kMaxWalkDepth = 256;

bool isIntegerText(const QString &text)
{
    static const QRegularExpression hex(QStringLiteral("^\\(?0x[0-9a-fA-F]+u?\\)?$"));
    static const QRegularExpression dec(QStringLiteral("^-?\\d+$"));
    const QString t = text.trimmed();
    return hex.match(t).hasMatch() || dec.match(t).hasMatch();
}

bool sameNumber(const QString &a, const QString &b)
{
    if (!isIntegerText(a) || !isIntegerText(b))
        return a == b;
    return normaliseNumber(a.trimmed()) == normaliseNumber(b.trimmed());
}

QString typeOf(const ActiveElement *element)
{
    if (element->widget()->inherits("HexSpinBox"))
        return QStringLiteral("HexSpinBox");
    return element->typeInfo();
}

bool isList(const QString &type)
{
    return type == QLatin1String("ComboBox") || type == QLatin1String("ButtonGroup");
}

bool isFlag(const QString &type)
{
    return type == QLatin1String("CheckBox") || type == QLatin1String("ToggleButton");
}

// "X.label=..." names X with a label lock, unless an element is called
// "X.label" itself.
QString stripSuffix(DocumentTables &tables, const QString &name, int *kind)
{
    *kind = Selectors::Value;
    if (tables.element(name))
        return name;
    const int k = Selectors::selectorKind(name);
    if (k == Selectors::Label || k == Selectors::Index) {
        *kind = k;
        return Selectors::removeSelector(name, k);
    }
    return name;
}

} // namespace

LockCheck::LockCheck(DocumentTables &tables)
    : m_tables(tables)
{
}

QList<QPair<QString, QStringList>> LockCheck::lockEntries(const ActiveElement *element)
{
    QList<QPair<QString, QStringList>> entries;
    const QVariantMap map = element->property("locks").toMap();
    for (auto it = map.constBegin(); it != map.constEnd(); ++it) {
        QStringList strings;
        if (it.value().type() == QVariant::StringList || it.value().type() == QVariant::List) {
            strings = it.value().toStringList();
        } else {
            strings = it.value().toString().split(QLatin1Char(';'));
        }
        strings.removeAll(QString());
        if (!strings.isEmpty())
            entries.append({it.key(), strings});
    }
    std::stable_sort(entries.begin(), entries.end(), [](const auto &a, const auto &b) {
        bool okA = false, okB = false;
        const qint64 x = NumberFormat::toInt64(a.first, &okA);
        const qint64 y = NumberFormat::toInt64(b.first, &okB);
        if (okA && okB)
            return x < y;
        return okA && !okB;
    });
    return entries;
}

QList<QPair<QString, QString>> LockCheck::listItems(const ActiveElement *element)
{
    QList<QPair<QString, QString>> items;
    const QWidget *widget = element->widget();
    if (auto *combo = qobject_cast<const QComboBox *>(widget)) {
        for (int i = 0; i < combo->count(); ++i)
            items.append({combo->itemData(i).toString(), combo->itemText(i)});
        return items;
    }
    // A radio group is no widget: the group object holds the buttons.
    if (auto *group = dynamic_cast<const QButtonGroup *>(element)) {
        for (const QAbstractButton *button : group->buttons())
            items.append({ButtonGroup::buttonValue(button), button->text()});
    }
    return items;
}

bool LockCheck::isLockSource(const ActiveElement *element)
{
    const QString type = element->typeInfo();
    return isList(type) || isFlag(type);
}

void LockCheck::run()
{
    m_graph.clear();
    m_circles.clear();
    m_circleKeys.clear();

    const QList<ActiveElement *> elements = m_tables.elementList.toList();
    for (ActiveElement *source : elements) {
        const auto entries = lockEntries(source);
        if (entries.isEmpty())
            continue;
        const QString sourceName = source->define();
        for (const auto &entry : entries) {
            m_graph.block(sourceName).ports.append(entry.first);
            for (const QString &lock : entry.second) {
                checkString(source, lock);
                const int eq = lock.indexOf(QLatin1Char('='));
                if (eq < 0)
                    continue;
                int kind = 0;
                const QString target = stripSuffix(m_tables, lock.left(eq).trimmed(), &kind);
                if (!m_tables.element(target))
                    continue;
                m_graph.block(target);
                m_graph.links.append(LockGraph::Link{sourceName, entry.first, target, lock.mid(eq + 1)});
            }
        }
    }

    for (ActiveElement *start : elements) {
        for (const auto &entry : lockEntries(start)) {
            for (const QString &lock : entry.second) {
                QStringList path{start->define()};
                walk(start, lock, path, 0);
            }
        }
    }
}

void LockCheck::checkString(ActiveElement *source, const QString &lock)
{
    const QString sourceName = source->define();
    const int eq = lock.indexOf(QLatin1Char('='));
    if (eq < 0) {
        consolePrint(kXmlError + QStringLiteral("Found lockon without \"=\" at definition of: %1<br>").arg(sourceName));
        return;
    }
    const QString written = lock.left(eq).trimmed();
    const QString value = lock.mid(eq + 1);
    int kind = 0;
    const QString targetName = stripSuffix(m_tables, written, &kind);
    ActiveElement *target = m_tables.element(targetName);
    // A second "=" makes the string one the running form ignores.
    const bool usable = target && !value.contains(QLatin1Char('='));
    if (usable && fits(source, target, targetName, value, kind))
        return;
    if (usable && kind == Selectors::Label && !isList(typeOf(target)) && !isFlag(typeOf(target))) {
        const QString type = typeOf(target);
        if (type == QLatin1String("SpinBox") || type == QLatin1String("HexSpinBox")
            || type == QLatin1String("DoubleSpinBox")) {
            consolePrint(kXmlError + QStringLiteral("%1 wants to lock label on %2: %3.<br>")
                                         .arg(sourceName, type.toLower(), targetName));
            return;
        }
    }
    consolePrint(kXmlError + QStringLiteral("%1 wants to lock %2 to %3.<br>").arg(sourceName, written, value));
}

bool LockCheck::fits(ActiveElement *source, ActiveElement *target, const QString &targetName, const QString &value,
                     int kind)
{
    Q_UNUSED(source);
    Q_UNUSED(targetName);
    const QString type = typeOf(target);
    if (isFlag(type)) {
        bool ok = false;
        const qint64 v = NumberFormat::toInt64(value, &ok);
        return ok && classifyNumber(value) != NumberFormat::Floating && (v == 0 || v == 1);
    }
    if (isList(type)) {
        const auto items = listItems(target);
        if (kind == Selectors::Label) {
            return std::any_of(items.begin(), items.end(), [&](const auto &item) { return item.second == value; });
        }
        if (!isIntegerText(value))
            return false;
        if (kind == Selectors::Index) {
            const qint64 index = NumberFormat::toInt64(value);
            return index >= 0 && index < items.size();
        }
        return std::any_of(items.begin(), items.end(),
                           [&](const auto &item) { return sameNumber(item.first, value); });
    }
    if (type == QLatin1String("LineEdit") || type == QLatin1String("EditBox"))
        return kind != Selectors::Index;

    const QVariant minimum = target->widget()->property("minimum");
    const QVariant maximum = target->widget()->property("maximum");
    if (type == QLatin1String("DoubleSpinBox")) {
        if (kind != Selectors::Value)
            return false;
        bool ok = false;
        const double v = value.trimmed().toDouble(&ok);
        if (!ok)
            return false;
        return !minimum.isValid() || !maximum.isValid()
            || (v >= minimum.toDouble() && v <= maximum.toDouble());
    }
    if (type == QLatin1String("SpinBox") || type == QLatin1String("HexSpinBox") || type == QLatin1String("Slider")
        || type == QLatin1String("Knob")) {
        if (kind != Selectors::Value || !isIntegerText(value))
            return false;
        const qint64 v = NumberFormat::toInt64(value);
        return !minimum.isValid() || !maximum.isValid()
            || (v >= minimum.toLongLong() && v <= maximum.toLongLong());
    }
    // Other classes take whatever their setValue makes of the text.
    return true;
}

QStringList LockCheck::keysFor(ActiveElement *target, const QString &value, int kind) const
{
    const auto entries = lockEntries(target);
    QStringList keys;
    if (!isList(typeOf(target))) {
        for (const auto &entry : entries)
            keys << entry.first;
        return keys;
    }
    // A list passes its locks on only under the item the lock selects.
    QString itemValue = value;
    if (kind != Selectors::Value) {
        itemValue.clear();
        const auto items = listItems(target);
        for (int i = 0; i < items.size(); ++i) {
            const bool hit = kind == Selectors::Label ? items.at(i).second == value
                                                      : isIntegerText(value) && NumberFormat::toInt64(value) == i;
            if (hit) {
                itemValue = items.at(i).first;
                break;
            }
        }
        if (itemValue.isEmpty())
            return keys;
    }
    for (const auto &entry : entries) {
        if (sameNumber(entry.first, itemValue))
            keys << entry.first;
    }
    return keys;
}

void LockCheck::walk(ActiveElement *start, const QString &lock, QStringList &path, int depth)
{
    if (depth > kMaxWalkDepth)
        return;
    const int eq = lock.indexOf(QLatin1Char('='));
    if (eq < 0)
        return;
    int kind = 0;
    const QString name = stripSuffix(m_tables, lock.left(eq).trimmed(), &kind);
    ActiveElement *target = m_tables.element(name);
    if (!target)
        return;
    if (target == start && isLockSource(target)) {
        reportCircle(path, name);
        return;
    }
    // A circle that does not pass the start is found from its own members.
    if (path.contains(name))
        return;
    path.append(name);
    const QString value = lock.mid(eq + 1);
    const auto entries = lockEntries(target);
    const QStringList keys = keysFor(target, value, kind);
    for (const auto &entry : entries) {
        if (!keys.contains(entry.first))
            continue;
        for (const QString &next : entry.second)
            walk(start, next, path, depth + 1);
    }
    path.removeLast();
}

void LockCheck::reportCircle(const QStringList &path, const QString &closing)
{
    // One circle is met from each of its members; it is told once.
    QStringList rotated = path;
    const auto smallest = std::min_element(rotated.begin(), rotated.end());
    std::rotate(rotated.begin(), smallest, rotated.end());
    const QString key = rotated.join(QLatin1Char('\n'));
    if (m_circleKeys.contains(key))
        return;
    m_circleKeys.insert(key);
    const QString text = (path + QStringList{closing}).join(QStringLiteral(" --> "));
    m_circles << text;
    consolePrint(kXmlError + QStringLiteral("Circular lock %1.<br>").arg(text));
}

#include "elements/ElementToolTip.h"

#include "elements/ActiveElement.h"
#include "reader/ToolTipConfig.h"

#include <QStringList>
#include <QTabWidget>
#include <QWidget>

QString ElementToolTip::containerPath(QWidget *widget)
{
    QStringList pages;
    for (QWidget *child = widget, *parent = widget ? widget->parentWidget() : nullptr; parent;
         child = parent, parent = parent->parentWidget()) {
        if (auto *tab = qobject_cast<QTabWidget *>(parent)) {
            const int page = tab->indexOf(child);
            if (page >= 0)
                pages.prepend(tab->tabText(page));
        }
    }
    return pages.join(QStringLiteral("->"));
}

QString ElementToolTip::build(ActiveElement *element, const QString &range)
{
    QStringList lines;
    const QString define = element->define();
    if (ToolTipConfig::shows(ToolTipConfig::Value))
        lines << define + QStringLiteral(" = ") + element->value(0);
    auto peers = [&lines](quint32 line, const char *caption, const LockRecords &records) {
        if (ToolTipConfig::shows(line) && !records.isEmpty())
            lines << QLatin1String(caption) + lockPeers(records).join(QStringLiteral(", "));
    };
    peers(ToolTipConfig::LockedBy, "Locked by: ", element->lockedBy);
    peers(ToolTipConfig::Locking, "Locking: ", element->locking);
    peers(ToolTipConfig::WaitingToLock, "Waiting to lock: ", element->waitingToLock);
    peers(ToolTipConfig::WaitingToBeLockedBy, "Waiting to be locked by: ", element->waitingToBeLockedBy);
    if (ToolTipConfig::shows(ToolTipConfig::EnumeratedValues) && !element->enumerated.isEmpty()) {
        QString text = QStringLiteral("Enumerated Values: ");
        for (const EnumeratedItem &item : element->enumerated)
            text += QStringLiteral("\n%1 %2 %3").arg(item.value).arg(item.name, item.description);
        lines << text;
    }
    QString containers;
    if (ToolTipConfig::shows(ToolTipConfig::Containers))
        containers = QStringLiteral("Containers: ") + containerPath(element->widget());
    const QString svd = element->property("svd").toString();
    if (ToolTipConfig::shows(ToolTipConfig::SvdName) && !svd.isEmpty())
        containers += QStringLiteral(" (%1)").arg(svd);
    if (!containers.isEmpty())
        lines << containers;
    if (ToolTipConfig::shows(ToolTipConfig::Header))
        lines << QStringLiteral("Header: ") + element->property("header").toString();
    if (ToolTipConfig::shows(ToolTipConfig::Default))
        lines << QStringLiteral("Default: ") + element->property("my_default").toString();
    if (ToolTipConfig::shows(ToolTipConfig::Range) && !range.isEmpty())
        lines << QStringLiteral("Range: ") + range;
    const QString own = element->property("tooltip").toString();
    if (ToolTipConfig::shows(ToolTipConfig::ToolTip) && !own.isEmpty())
        lines << own;
    return lines.join(QLatin1Char('\n'));
}

void ElementToolTip::apply(ActiveElement *element, const QString &range)
{
    element->widget()->setToolTip(build(element, range));
}

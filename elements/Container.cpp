#include "elements/Container.h"

#include "elements/AbsoluteWidget.h"
#include "elements/GridWidget.h"
#include "elements/GroupBox.h"
#include "elements/HorizontalWidget.h"
#include "elements/TabWidget.h"
#include "elements/TreeWidget.h"
#include "elements/VerticalWidget.h"

#include <QRadioButton>

Container::~Container() = default;

QRadioButton *Container::addRadioButton(const QString &label, int index, const QString &define)
{
    auto *button = new QRadioButton(label, childParent());
    button->setObjectName(define);
    placeChild(button, label, index);
    return button;
}

// Value elements.

// Display elements.

// Views.

TabWidget *Container::addTabContainer(const QString &label, int index, const QString &name)
{
    return make<TabWidget>(label, index, name);
}

AbsoluteWidget *Container::addAbsoluteContainer(const QString &label, int index, const QString &name)
{
    return make<AbsoluteWidget>(label, index, name);
}

GroupBox *Container::addGroupContainer(const QString &label, int index, const QString &name)
{
    GroupBox *box = make<GroupBox>(label, index, name);
    box->setTitle(label);
    return box;
}

HorizontalWidget *Container::addHorizontalContainer(const QString &label, int index, const QString &name)
{
    return make<HorizontalWidget>(label, index, name);
}

GridWidget *Container::addGridContainer(const QString &label, int index, const QString &name)
{
    return make<GridWidget>(label, index, name);
}

VerticalWidget *Container::addVerticalContainer(const QString &label, int index, const QString &name)
{
    return make<VerticalWidget>(label, index, name);
}

TreeWidget *Container::addTreeContainer(const QString &label, int index, const QString &name)
{
    return make<TreeWidget>(label, index, name);
}

Container *asContainer(QObject *object)
{
    return dynamic_cast<Container *>(object);
}

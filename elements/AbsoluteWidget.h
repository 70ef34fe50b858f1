#pragma once
#include <QWidget>

#include "elements/Container.h"

// A container without layout: children are placed by their `pos` and `size`
// attributes.
class AbsoluteWidget : public QWidget, public Container
{
    Q_OBJECT
public:
    explicit AbsoluteWidget(QWidget *parent = nullptr);

    void addWidget(QWidget *widget, const QString &label = QString(), int index = -1) override;
    QString objectName() const override { return QObject::objectName(); }
    QWidget *containerWidget() override { return this; }
    QSize sizeHint() const override;

signals:
    void selected_setDef(const QString &data);

public slots:
    void childSetDef(int iPageNr);

protected:
    QWidget *childParent() override { return this; }
    void placeChild(QWidget *child, const QString &label, int index) override;
};

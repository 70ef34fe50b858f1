#pragma once
#include <QFrame>

#include "elements/Container.h"

class QBoxLayout;

// A row of elements (horizontalcontainer).
class HorizontalWidget : public QFrame, public Container
{
    Q_OBJECT
public:
    explicit HorizontalWidget(QWidget *parent = nullptr);

    void addWidget(QWidget *widget, const QString &label = QString(), int index = -1) override;
    QString objectName() const override { return QObject::objectName(); }
    QWidget *containerWidget() override { return this; }
    QBoxLayout *boxLayout() const { return m_layout; }

signals:
    void selected_setDef(const QString &data);

public slots:
    void childSetDef(int iPageNr);

protected:
    QWidget *childParent() override { return this; }
    void placeChild(QWidget *child, const QString &label, int index) override;

private:
    QBoxLayout *m_layout = nullptr;
};

#pragma once
#include <QStringList>
#include <QTabWidget>

#include "elements/Container.h"

// A page for each child, in document order. Pages with `selectsetdef` or
// `unselectsetdef` run those setDef texts when they become, or stop being,
// the current page.
class TabWidget : public QTabWidget, public Container
{
    Q_OBJECT
public:
    explicit TabWidget(QWidget *parent = nullptr);

    void addWidget(QWidget *widget, const QString &label = QString(), int index = -1) override;
    QString objectName() const override { return QObject::objectName(); }
    QWidget *containerWidget() override { return this; }

    // The page left by the last change of page, and the page selected now.
    int lastSelected = 0;
    int selectedNow = 0;

    // `resize` not 0: pages are fitted to their content on each change.
    void setResizePages(bool on);

    // The setDef texts a page runs when the current page changes to iPageNr.
    static QStringList pageSetDefs(QWidget *page, int iPageNr);

signals:
    void updateMathLabels();

public slots:
    void updateSizes(int index);
    void changedTab(int index);

protected:
    QWidget *childParent() override { return this; }
    void placeChild(QWidget *child, const QString &label, int index) override;

private:
    bool m_resizePages = false;
};

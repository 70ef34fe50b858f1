#pragma once
#include <QAbstractItemDelegate>
#include <QDialog>
#include <QModelIndex>
#include <QPair>
#include <QPoint>
#include <QPointer>

#include "tooling/ElementKind.h"

class AttributeTable;
class Document;
class ElementBlinker;
class FormEditor;
class QMenu;
class QMyTreeView;
class QStandardItemModel;
class QTableView;

// The form editor: the live form as a tree on the left, the attributes of
// the selected element on the right. Every change goes to the real widgets
// at once, so the form behind the dialog is the preview; "Save" writes the
// form out as a new description. Not modal: the form stays usable.
class ShowXMLDialog : public QDialog
{
    Q_OBJECT
public:
    ShowXMLDialog(Document &document, QWidget *parent = nullptr);
    ~ShowXMLDialog() override;

    QMyTreeView *treeView() const { return m_tree; }
    QStandardItemModel *treeModel() const { return m_model; }
    QTableView *tableView() const { return m_table; }
    AttributeTable *attributeTable() const { return m_attributes; }
    FormEditor *editor() const { return m_editor; }

    // The Add menu and the rest of the context menu (for the given item).
    QMenu *contextMenu();

    // Selects the row of a form widget (or of the nearest enclosing widget
    // that has one) and fills the table; false when none has a row.
    bool selectWidget(QWidget *widget);

    // Rebuilds the tree from the form.
    void refill();

public slots:
    void expandAll();
    void editProperties();
    void saveXML();
    void on_clicked(QModelIndex index);
    void onCustomContextMenu(QPoint point);

    void addVertical();
    void addHoriontal();
    void addGrid();
    void addTab();
    void addAbsolute();
    void addGroup();
    void addRadio();
    void addCombo();
    void addCheckbox();
    void addSpinbox();
    void addHexSpinbox();
    void addDoubleSpinbox();
    void addLineEdit();
    void addTextEdit();
    void addMathLabel();
    void addText();
    void addImage();
    void addLED();
    void addButton();
    void addToggleButton();
    void addTimer();
    void addSlider();
    void addKnob();
    void addDial();
    void addPlot();
    void addThermo();
    void addRegView();
    void addTable();
    void addVar();

    void removeWidget();
    void copy();
    void cut();
    void paste();

    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint);

signals:
    // "%1 %2": class and object name of the form widget under the mouse.
    void statusText(const QString &text);
    // The form was changed through the editor.
    void formChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void add(ElementKind::Kind kind);
    void select(const QModelIndex &index);
    void watchForm(QWidget *widget);
    void applyHeaders();
    QModelIndex current() const;

    Document &m_document;
    QStandardItemModel *m_model;
    QMyTreeView *m_tree;
    QTableView *m_table;
    AttributeTable *m_attributes;
    FormEditor *m_editor;
    ElementBlinker *m_blinker;
    QMenu *m_menu = nullptr;
    QString m_saveFolder;
    QPair<ulong, QPoint> m_lastPress;
};

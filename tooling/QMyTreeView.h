#pragma once
#include <QTreeView>

class FormEditor;

// The form editor's tree view: rows can be dragged onto other rows of the
// same view, which moves the elements in the form. Drops from anywhere else
// are the base class's business.
class QMyTreeView : public QTreeView
{
    Q_OBJECT
public:
    explicit QMyTreeView(QWidget *parent = nullptr);

    // The editor that carries out the moves; without one nothing moves.
    void setEditor(FormEditor *editor) { m_editor = editor; }

    // Carries out a drop of the selected rows on target with the indicator's
    // position (a QAbstractItemView::DropIndicatorPosition value). True when
    // an element moved. dropEvent comes here.
    bool dropRows(const QModelIndex &target, int position, const QModelIndexList &selection);

protected:
    void dropEvent(QDropEvent *event) override;

private:
    FormEditor *m_editor = nullptr;
};

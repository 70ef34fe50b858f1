#pragma once
#include <QPoint>
#include <QStandardItemModel>
#include <QTableView>

#include "elements/ActiveElement.h"

// One column of a table as the description declares it.
struct TableColumn
{
    int kind = -1;
    QString label;
    QString tooltip;
    QString format;
    QString defaultText;
    QString source;
    qint16 columnWidth = 100;
};

// A register sequence editor: every row is one command to a target
// register (name, address, function, value, delay, answer, comment). Rows
// come from the element's suffix commands (usually actions of a register
// view), from editing, from drag and drop, and from table files; they are
// exported as a C function and sent to the board row by row (TableTransfer).
class Table : public QTableView, public ActiveElement
{
    Q_OBJECT
public:
    enum Kind { RegName = 0, Address, Func, Value, Delay, Answer, Comment, Delete, Math, KindCount };
    static const int kMaxColumns = 10;

    explicit Table(QWidget *parent = nullptr);

    // The kind of a column's `type` text; -1 for none.
    static int kindOf(const QString &type);

    // Reader side: columns first (the 11th and later are ignored), then the
    // model is built with them.
    bool addColumn(const TableColumn &column);
    // Drops every column (the form editor rewrites them all, then rebuilds).
    void clearColumns();
    void setNumRows(quint16 rows) { m_numRows = rows; }
    void setFormats(const QString &send, const QString &rec, const QString &tooltipRec);
    void buildModel();

    // ActiveElement
    bool setValue(const QString &text, int kind) override;
    bool loadValue(const QString &text) override;
    QString value(int kind, bool flag = false) override;
    QString referenceValue() override;
    void connectSignals() override;
    void emitLocks() override {}
    void setElementEnabled(bool enabled) override;
    bool setBits(int msb, int lsb) override;
    QWidget *widget() override { return this; }
    using ActiveElement::property;
    using ActiveElement::setProperty;
    QString typeInfo() const override { return QStringLiteral("Table"); }

    // Script operations.
    bool loadFile(const QString &fileName, bool at);
    bool saveFile(const QString &fileName);
    bool exportFile(const QString &fileName);
    void setTableValue(int row, int kind, const QString &value);
    void selectLine(int row);
    // Moves the rows (view order kept) in front of target; -1 or a row
    // beyond the last appends them. What a drop of dragged rows does.
    void moveRows(QList<int> rows, int target);

    // The decode tooltip (see RegisterDecoder) of the value cell of row
    // (name empty: the name comes from the register name cell at row plus
    // offset) or of the answer cell (name given).
    void decodeToolTip(quint64 value, int row, int offset, const QString &name);
    // The decode text of a value for the register "module.register".
    static QString decodeText(const QString &registerName, quint64 value);

    QStandardItemModel *tableModel() const { return m_model; }
    int columnOf(int kind) const { return kind >= 0 && kind < KindCount ? m_columnByKind[kind] : -1; }
    const TableColumn &column(int index) const { return m_columns[index]; }
    int columnCount() const { return m_columnCount; }
    quint16 numRows() const { return m_numRows; }
    QString cellText(int row, int kind) const;
    QStandardItem *cell(int row, int kind) const;

    int currentRowIndex() const { return m_currentRow; }
    int currentColumnIndex() const { return m_currentColumn; }
    void setWriteCursor(int row, int column) { m_currentRow = row; m_currentColumn = column; }
    bool insertMode() const { return m_insertMode; }
    bool singleStep() const { return m_singleStep; }
    quint16 sendLoop() const { return m_sendLoop; }
    QString sendFormat() const { return m_sendFormat; }
    QString recFormat() const { return m_recFormat; }
    QString toolTipRecFormat() const { return m_toolTipRecFormat; }

    // Kept by the transfer between rows and passes.
    QList<quint16> answerWidths;
    QString lastRegisterNames[3];
    QPoint messagePosition{-1, -1};

    QSize minimumSizeHint() const override;
    using QTableView::edit;

signals:
    void changedByUser();
    void updateMathLabels() override;
    void changed_sendUSB(const QString &data);
    void changed_setDef(const QString &data);

public slots:
    void onTableClicked(const QModelIndex &index);
    void onTablePressed(const QModelIndex &index);
    void valueChanged(int val);
    void valueChangedByUser(int val);
    void enable(bool enable);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;
    bool edit(const QModelIndex &index, EditTrigger trigger, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QString resolveArgument(const QString &text, int kind) const;
    void addRow(const QString &text);
    void setRegisterName(const QString &text, const QString &given);
    void setAddress(const QString &text);
    void deleteRow();
    void deleteAll();
    void setItem(int row, int column, const QString &text, bool enabled, const QString &toolTip = QString());
    QString initialText(int column) const;
    void ensureRow(int row);
    void applyPlainWidths();
    void applyScaledWidths();
    void fillMathColumns(int row);
    void record(const QString &line);
    bool fileCommand(int kind);

    QStandardItemModel *m_model = nullptr;
    int m_columnCount = 0;
    quint16 m_numRows = 2;
    int m_currentColumn = 0;
    int m_currentRow = 0;
    QString m_sendFormat;
    QString m_recFormat;
    QString m_toolTipRecFormat;
    bool m_insertMode = false;
    bool m_singleStep = false;
    bool m_loadAt = false;
    quint16 m_sendLoop = 1;
    QString m_func;
    TableColumn m_columns[kMaxColumns];
    int m_columnByKind[KindCount];
    QString m_copyTexts[6];
    QString m_copyToolTips[2];
    bool m_haveCopy = false;
    QModelIndex m_nextIndex;
    // The cell whose editor is open.
    QPersistentModelIndex m_editIndex;
};

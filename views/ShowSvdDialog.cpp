#include "views/ShowSvdDialog.h"

#include "elements/ActiveElement.h"
#include "elements/DocumentTables.h"
#include "elements/Selectors.h"
#include "model/BitField.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "views/SvdTree.h"
#include "views/ViewContext.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>

namespace {
const int kDefineRole = Qt::UserRole + 1;
}

ShowSvdDialog::ShowSvdDialog(ShowElement show, QWidget *parent)
    : QDialog(parent)
    , m_show(std::move(show))
    , m_tree(new QTreeView(this))
    , m_model(new QStandardItemModel(this))
{
    setWindowTitle(tr("Show the current loaded SVD as a tree"));
    auto *layout = new QVBoxLayout(this);
    m_tree->setModel(m_model);
    m_tree->setHeaderHidden(true);
    m_tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    layout->addWidget(m_tree);
    auto *expand = new QPushButton(tr("Expand all"), this);
    connect(expand, &QPushButton::clicked, m_tree, &QTreeView::expandAll);
    layout->addWidget(expand);
    auto *box = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(box, &QDialogButtonBox::accepted, this, &QDialog::accept);
    layout->addWidget(box);
    connect(m_tree, &QTreeView::doubleClicked, this, &ShowSvdDialog::on_doubleClicked);
    resize(600, 700);
    fill();
}

void ShowSvdDialog::fill()
{
    m_model->clear();
    HardwareModel *hardware = ViewContext::model();
    if (!hardware)
        return;
    DocumentTables *tables = DocumentTables::current();
    const QBrush highlight(QColor(230, 240, 255));
    for (Peripheral *peripheral : hardware->devicePeripherals()) {
        const QList<Register *> registers = peripheral->registersByAddress();
        // The peripheral's base: its lowest placed register.
        int base = -1;
        for (Register *reg : registers) {
            if (reg->address >= 0 && (base < 0 || reg->address < base))
                base = reg->address;
        }
        auto *root = new QStandardItem(QStringLiteral("%1 (%2)").arg(peripheral->name, QString::number(quint32(base), 16)));
        root->setToolTip(peripheral->description);
        for (Register *reg : registers) {
            auto *regItem = new QStandardItem(QStringLiteral("%1 (%2)").arg(reg->name, QString::number(quint32(reg->address), 16)));
            regItem->setToolTip(reg->description);
            QList<BitField *> fields = reg->fields.values();
            std::sort(fields.begin(), fields.end(), [](BitField *a, BitField *b) { return a->msb > b->msb; });
            for (BitField *field : fields) {
                const QString define = peripheral->name + QLatin1Char('.') + reg->name + QLatin1Char('.') + field->name;
                ActiveElement *element = tables ? tables->element(define) : nullptr;
                auto *fieldItem = new QStandardItem(element ? QStringLiteral("%1: %2").arg(field->name, element->value(Selectors::Value))
                                                            : field->name);
                fieldItem->setToolTip(SvdTree::fieldToolTip(field->description, field->enumeratedValues));
                if (element) {
                    fieldItem->setData(define, kDefineRole);
                    fieldItem->setBackground(highlight);
                }
                regItem->appendRow(fieldItem);
            }
            root->appendRow(regItem);
        }
        m_model->appendRow(root);
    }
}

void ShowSvdDialog::on_doubleClicked(const QModelIndex &index)
{
    const QString define = index.data(kDefineRole).toString();
    DocumentTables *tables = DocumentTables::current();
    ActiveElement *element = tables && !define.isEmpty() ? tables->element(define) : nullptr;
    if (element && m_show)
        m_show(element);
}

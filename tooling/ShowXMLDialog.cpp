#include "tooling/ShowXMLDialog.h"

#include "elements/ActiveElement.h"
#include "elements/ButtonGroup.h"
#include "elements/PageRevealer.h"
#include "shell/Dialogs.h"
#include "shell/Document.h"
#include "shell/ElementBlinker.h"
#include "tooling/AttributeTable.h"
#include "tooling/FormEditor.h"
#include "tooling/FormTree.h"
#include "tooling/GuiXmlWriter.h"
#include "tooling/QMyTreeView.h"
#include "tooling/XMLPropertiesDialog.h"

#include <QDialogButtonBox>
#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenu>
#include <QMouseEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

ShowXMLDialog::ShowXMLDialog(Document &document, QWidget *parent)
    : QDialog(parent)
    , m_document(document)
    , m_model(new QStandardItemModel(this))
    , m_tree(new QMyTreeView(this))
    , m_table(new QTableView(this))
    , m_blinker(new ElementBlinker(this))
{
    setWindowTitle(tr("Show the current loaded XML as a tree"));
    setModal(false);
    setAttribute(Qt::WA_DeleteOnClose, false);

    m_editor = new FormEditor(document, m_model, this);
    m_tree->setModel(m_model);
    m_tree->setEditor(m_editor);
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    m_attributes = new AttributeTable(document, m_table, this);
    // Actions edited in the table act at once, wired as the reader wires them.
    m_attributes->setSlotHost(document.slotHost());
    m_table->setModel(m_attributes->model());
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->verticalHeader()->hide();
    applyHeaders();

    auto *splitter = new QSplitter(this);
    splitter->addWidget(m_tree);
    splitter->addWidget(m_table);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 1);

    auto *expand = new QPushButton(tr("Expand all"), this);
    auto *properties = new QPushButton(tr("Properties"), this);
    auto *save = new QPushButton(tr("Save"), this);
    auto *box = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(expand);
    buttons->addWidget(properties);
    buttons->addWidget(save);
    buttons->addStretch(1);
    buttons->addWidget(box);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(splitter, 1);
    layout->addLayout(buttons);
    resize(760, 560);

    connect(expand, SIGNAL(clicked()), this, SLOT(expandAll()));
    connect(properties, SIGNAL(clicked()), this, SLOT(editProperties()));
    connect(save, SIGNAL(clicked()), this, SLOT(saveXML()));
    connect(box, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_tree, SIGNAL(clicked(QModelIndex)), this, SLOT(on_clicked(QModelIndex)));
    connect(m_tree, SIGNAL(customContextMenuRequested(QPoint)), this, SLOT(onCustomContextMenu(QPoint)));
    connect(m_editor, &FormEditor::formChanged, this, &ShowXMLDialog::formChanged);
    // Editors of the value cells end here, so the edit reaches the widget.
    if (QAbstractItemDelegate *delegate = m_table->itemDelegate())
        connect(delegate, &QAbstractItemDelegate::closeEditor, this, &ShowXMLDialog::closeEditor);

    refill();
    // The tree points into this form: a new document ends the editor.
    if (QWidget *root = document.root())
        connect(root, &QObject::destroyed, this, &QWidget::close);
}

ShowXMLDialog::~ShowXMLDialog()
{
    m_blinker->stop();
}

void ShowXMLDialog::applyHeaders()
{
    QStandardItemModel *model = m_attributes->model();
    if (!model)
        return;
    if (model->columnCount() < 2)
        model->setColumnCount(2);
    auto *attribute = new QStandardItem(tr("Attribute"));
    attribute->setToolTip(tr("Attribute of GUI element"));
    auto *value = new QStandardItem(tr("Value"));
    value->setToolTip(tr("Current setting"));
    model->setHorizontalHeaderItem(0, attribute);
    model->setHorizontalHeaderItem(1, value);
}

void ShowXMLDialog::refill()
{
    m_editor->tree().fill();
    m_tree->expandToDepth(0);
    watchForm(m_document.root());
}

void ShowXMLDialog::watchForm(QWidget *widget)
{
    if (!widget)
        return;
    widget->removeEventFilter(this);
    widget->installEventFilter(this);
    for (QWidget *child : widget->findChildren<QWidget *>()) {
        child->removeEventFilter(this);
        child->installEventFilter(this);
    }
}

QModelIndex ShowXMLDialog::current() const
{
    return m_tree->currentIndex();
}

void ShowXMLDialog::expandAll()
{
    m_tree->expandAll();
}

void ShowXMLDialog::editProperties()
{
    XMLPropertiesDialog dialog(m_document.state(), this);
    if (Dialogs::quiet())
        return;
    dialog.exec();
}

void ShowXMLDialog::saveXML()
{
    if (m_saveFolder.isEmpty())
        m_saveFolder = m_document.folder();
    const QString name = Dialogs::saveFileName(this, tr("Save GUI XML"), m_saveFolder, tr("GUI Files (*.xml)"));
    if (name.isEmpty())
        return;
    m_saveFolder = QFileInfo(name).absolutePath();
    GuiXmlWriter writer(m_document);
    if (!writer.write(name))
        Dialogs::message(this, QMessageBox::Warning, tr("Save GUI XML"), writer.errorText());
}

void ShowXMLDialog::select(const QModelIndex &index)
{
    m_tree->setCurrentIndex(index);
    on_clicked(index);
}

namespace {

// What the attribute table shows for a row's object: a radio group's row
// stands for the group itself, whose properties are the element's.
QObject *attributeTarget(QObject *object)
{
    if (auto *group = object ? object->findChild<ButtonGroup *>(QString(), Qt::FindDirectChildrenOnly) : nullptr)
        return group;
    return object;
}

} // namespace

void ShowXMLDialog::on_clicked(QModelIndex index)
{
    QObject *object = FormTree::objectOf(index);
    m_attributes->fill(attributeTarget(object));
    applyHeaders();
    auto *widget = qobject_cast<QWidget *>(object);
    if (!widget || !dynamic_cast<ActiveElement *>(widget))
        return;
    // The form shows the element: its pages opened, scrolled to, blinking.
    PageRevealer::reveal(widget);
    for (QWidget *up = widget->parentWidget(); up; up = up->parentWidget()) {
        if (auto *scroll = qobject_cast<QScrollArea *>(up)) {
            scroll->ensureWidgetVisible(widget);
            break;
        }
    }
    if (widget->isVisible())
        m_blinker->start(widget);
}

bool ShowXMLDialog::selectWidget(QWidget *widget)
{
    for (QWidget *w = widget; w; w = w->parentWidget()) {
        if (QStandardItem *item = m_editor->tree().itemOf(w)) {
            m_tree->setCurrentIndex(item->index());
            m_tree->scrollTo(item->index());
            m_attributes->fill(attributeTarget(w));
            applyHeaders();
            return true;
        }
        if (w == m_document.root())
            break;
    }
    return false;
}

bool ShowXMLDialog::eventFilter(QObject *watched, QEvent *event)
{
    auto *widget = qobject_cast<QWidget *>(watched);
    if (widget && (event->type() == QEvent::MouseMove || event->type() == QEvent::Enter))
        emit statusText(QStringLiteral("%1 %2").arg(QString::fromLatin1(widget->metaObject()->className()),
                                                    widget->objectName()));
    else if (widget && event->type() == QEvent::MouseButtonPress) {
        // A press that the widget ignores goes on to its parents: only the
        // widget that was hit counts.
        auto *press = static_cast<QMouseEvent *>(event);
        const auto stamp = qMakePair(press->timestamp(), press->globalPos());
        if (stamp != m_lastPress) {
            m_lastPress = stamp;
            selectWidget(widget);
        }
    }
    return QDialog::eventFilter(watched, event);
}

QMenu *ShowXMLDialog::contextMenu()
{
    if (m_menu)
        return m_menu;
    static const char *const kAddSlots[] = {
        SLOT(addVertical()),    SLOT(addHoriontal()),  SLOT(addGrid()),       SLOT(addTab()),
        SLOT(addAbsolute()),    SLOT(addGroup()),      SLOT(addRadio()),      SLOT(addCombo()),
        SLOT(addCheckbox()),    SLOT(addSpinbox()),    SLOT(addHexSpinbox()), SLOT(addDoubleSpinbox()),
        SLOT(addLineEdit()),    SLOT(addTextEdit()),   SLOT(addMathLabel()),  SLOT(addText()),
        SLOT(addImage()),       SLOT(addLED()),        SLOT(addButton()),     SLOT(addToggleButton()),
        SLOT(addTimer()),       SLOT(addSlider()),     SLOT(addKnob()),       SLOT(addDial()),
        SLOT(addThermo()),      SLOT(addPlot()),       SLOT(addRegView()),    SLOT(addTable()),
    };
    m_menu = new QMenu(tr("Menu"), this);
    QMenu *add = m_menu->addMenu(tr("Add"));
    for (ElementKind::Kind kind : ElementKind::menuOrder()) {
        QAction *action = add->addAction(QIcon(ElementKind::imagePath(kind)), ElementKind::menuText(kind));
        connect(action, SIGNAL(triggered()), this, kAddSlots[kind]);
        if (kind == ElementKind::Group)
            add->addSeparator();
    }
    connect(add->addAction(QIcon(ElementKind::imagePath(ElementKind::Var)), tr("Var")), SIGNAL(triggered()), this,
            SLOT(addVar()));
    connect(m_menu->addAction(tr("Remove")), SIGNAL(triggered()), this, SLOT(removeWidget()));
    connect(m_menu->addAction(tr("Copy")), SIGNAL(triggered()), this, SLOT(copy()));
    connect(m_menu->addAction(tr("Paste")), SIGNAL(triggered()), this, SLOT(paste()));
    return m_menu;
}

void ShowXMLDialog::onCustomContextMenu(QPoint point)
{
    const QModelIndex index = m_tree->indexAt(point);
    if (!index.isValid())
        return;
    m_tree->setCurrentIndex(index);
    contextMenu()->exec(m_tree->viewport()->mapToGlobal(point));
}

void ShowXMLDialog::add(ElementKind::Kind kind)
{
    const QModelIndex made = m_editor->add(kind, current());
    if (!made.isValid())
        return;
    watchForm(FormTree::widgetOf(made));
    m_tree->expand(made.parent());
    select(made);
}

void ShowXMLDialog::addVertical() { add(ElementKind::Vertical); }
void ShowXMLDialog::addHoriontal() { add(ElementKind::Horizontal); }
void ShowXMLDialog::addGrid() { add(ElementKind::Grid); }
void ShowXMLDialog::addTab() { add(ElementKind::Tab); }
void ShowXMLDialog::addAbsolute() { add(ElementKind::Absolute); }
void ShowXMLDialog::addGroup() { add(ElementKind::Group); }
void ShowXMLDialog::addRadio() { add(ElementKind::Radio); }
void ShowXMLDialog::addCombo() { add(ElementKind::Combo); }
void ShowXMLDialog::addCheckbox() { add(ElementKind::Checkbox); }
void ShowXMLDialog::addSpinbox() { add(ElementKind::Spinbox); }
void ShowXMLDialog::addHexSpinbox() { add(ElementKind::HexSpinbox); }
void ShowXMLDialog::addDoubleSpinbox() { add(ElementKind::DoubleSpinbox); }
void ShowXMLDialog::addLineEdit() { add(ElementKind::LineEdit); }
void ShowXMLDialog::addTextEdit() { add(ElementKind::TextEdit); }
void ShowXMLDialog::addMathLabel() { add(ElementKind::MathLabel); }
void ShowXMLDialog::addText() { add(ElementKind::Text); }
void ShowXMLDialog::addImage() { add(ElementKind::Image); }
void ShowXMLDialog::addLED() { add(ElementKind::LED); }
void ShowXMLDialog::addButton() { add(ElementKind::Button); }
void ShowXMLDialog::addToggleButton() { add(ElementKind::ToggleButton); }
void ShowXMLDialog::addTimer() { add(ElementKind::Timer); }
void ShowXMLDialog::addSlider() { add(ElementKind::Slider); }
void ShowXMLDialog::addKnob() { add(ElementKind::Knob); }
void ShowXMLDialog::addDial() { add(ElementKind::Dial); }
void ShowXMLDialog::addPlot() { add(ElementKind::Plot); }
void ShowXMLDialog::addThermo() { add(ElementKind::Thermo); }
void ShowXMLDialog::addRegView() { add(ElementKind::RegView); }
void ShowXMLDialog::addTable() { add(ElementKind::Table); }

void ShowXMLDialog::addVar()
{
    const QString name = Dialogs::text(this, tr("Enter name of new var"), tr("Var name:"));
    const QModelIndex made = m_editor->addVar(name);
    if (made.isValid())
        select(made);
}

void ShowXMLDialog::removeWidget()
{
    if (m_editor->remove(current()))
        m_attributes->fill(nullptr);
}

void ShowXMLDialog::copy()
{
    m_editor->copy(current());
}

void ShowXMLDialog::cut()
{
    if (m_editor->cut(current()))
        m_attributes->fill(nullptr);
}

void ShowXMLDialog::paste()
{
    const QModelIndex made = m_editor->paste(current());
    if (!made.isValid())
        return;
    watchForm(FormTree::widgetOf(made));
    m_tree->expand(made.parent());
    select(made);
}

void ShowXMLDialog::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    m_attributes->closeEditor(editor, hint);
    // A renamed element shows its new name in the tree.
    QModelIndex index = current();
    if (QObject *object = FormTree::objectOf(index))
        m_model->setData(index.sibling(index.row(), 0), FormTree::textOf(object), Qt::DisplayRole);
}

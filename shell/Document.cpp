#include "shell/Document.h"

#include "elements/ActiveElement.h"
#include "elements/ComboBox.h"
#include "elements/LineEdit.h"
#include "elements/DataClass.h"
#include "elements/MessageSink.h"
#include "elements/Reports.h"
#include "elements/SlotWiring.h"
#include "elements/TreeWidget.h"
#include "model/BitField.h"
#include "model/DefineText.h"
#include "model/ExpressionEvaluator.h"
#include "model/HardwareModel.h"
#include "model/LockEngine.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "reader/DescriptionReader.h"
#include "shell/Dialogs.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QWidget>

Document::Document(QObject *slotHost, QObject *parent)
    : QObject(parent)
    , m_slotHost(slotHost)
    , m_model(new HardwareModel(&m_tables))
    , m_locks(new LockEngine(&m_tables, this))
{
    DocumentTables::setCurrent(&m_tables);
    LockEngine::setCurrent(m_locks);
    ComboBox::setHardwareModel(m_model.get());
}

Document::~Document()
{
    clear();
    if (DocumentTables::current() == &m_tables)
        DocumentTables::setCurrent(nullptr);
}

void Document::clear()
{
    // Containers own their elements: deleting the root ends the form. The
    // tables only point into it and are emptied with it.
    if (m_root) {
        // Until an event loop runs (a script started from the command line
        // opens form after form), every widget of the form keeps the
        // polish request Qt queued when it was made, and each destructor
        // searches the whole queue for its own. Polishing happens anyway
        // when a widget is shown, so the requests are dropped at once here.
        QCoreApplication::removePostedEvents(nullptr, QEvent::PolishRequest);
        delete m_root.data();
    }
    m_root = nullptr;
    // $DIR$ has no place in the form, so the root does not take it along.
    if (ActiveElement *dir = m_tables.element(QStringLiteral("$DIR$"))) {
        if (!dir->widget()->parentWidget())
            delete dir->widget();
    }
    m_tables.clear();
    // What the root level said (files, version, ports) went with the form:
    // a failed read must not leave the former description's settings behind.
    m_state = DocumentState();
    m_model->clear();
    // Conflicts belong to the form that is gone; the next starts at 0.
    m_locks->clear();
}

bool Document::read(const QString &fileName, const ReaderOptions &options)
{
    clear();
    m_errorText.clear();
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        m_errorText = file.errorString();
        return false;
    }
    m_path = QFileInfo(fileName).absoluteFilePath();
    m_folder = QFileInfo(fileName).absolutePath();
    QDir::setCurrent(m_folder);

    ReaderOptions withModel = options;
    withModel.model = m_model.get();
    DescriptionReader reader(m_tables, withModel);
    if (!reader.read(&file, fileName)) {
        m_errorText = reader.errorString();
        m_tables.clear();
        return false;
    }
    m_state = reader.state();
    m_root = reader.takeRootWidget();
    return true;
}

bool Document::readSvd(const QString &homeFolder, QWidget *dialogParent)
{
    const QString name = m_state.svdName;
    if (name.isEmpty()) {
        // A form is bound to a device: without an SVD file it can't open.
        consolePrint(QStringLiteral("<font color=\"red\"> <b>XML Error: </b></font><b>No svd file named in %1<br>")
                         .arg(m_path));
        return false;
    }
    QString path = QDir(m_folder).filePath(name);
    if (!QFileInfo::exists(path))
        path = QDir(homeFolder).filePath(name);
    if (!QFileInfo::exists(path)) {
        const QString bare = QFileInfo(name).fileName();
        path = Dialogs::openFileName(dialogParent, tr("Could not find %1!").arg(bare), m_folder,
                                     QStringLiteral("%1 (%1)").arg(bare));
        if (path.isEmpty())
            return false;
    }
    return m_model->readSvdFile(path);
}

void Document::createReservedDefines()
{
    auto *dummy = m_tables.addDataValue(new DataClass(QStringLiteral("dummy_define")));
    const char *ledSlots[] = {SLOT(on_updateLED()), SLOT(on_updateSvgImage()), SLOT(on_updateCurve()),
                              SLOT(on_updateDial()), SLOT(on_updateThermo()), SLOT(on_updateLog())};
    for (const char *slot : ledSlots)
        SlotWiring::connectIfPresent(dummy, SIGNAL(updateLEDs()), m_slotHost, slot);
    SlotWiring::connectIfPresent(dummy, SIGNAL(updateMathLabels()), m_slotHost, SLOT(on_updateMathLabel()));

    for (const char *name : {"$ADDRESS$", "$VALUE$", "$FUNC$"}) {
        auto *data = m_tables.addDataValue(new DataClass(QLatin1String(name)));
        SlotWiring::connectIfPresent(data, SIGNAL(updateMathLabels()), m_slotHost, SLOT(on_updateMathLabel()));
    }

    // The directory loop's current name, unless the document has its own.
    const QString dirName = QStringLiteral("$DIR$");
    if (!m_tables.element(dirName)) {
        auto *dir = new LineEdit(nullptr);
        dir->setObjectName(dirName);
        dir->hide();
        m_model->claimDefine(dirName, QString(), dir, false);
        SlotWiring::connectIfPresent(dir, SIGNAL(changedByUser()), m_slotHost, SLOT(changed()));
    }
}

void Document::startUp(bool afterLoad, const QString &configurationName)
{
    bool anyHeader = false;
    for (ActiveElement *element : m_tables.elementList) {
        if (!element->property("header").toString().isEmpty()) {
            anyHeader = true;
            break;
        }
    }
    if (anyHeader) {
        const QString form = afterLoad
            ? QStringLiteral("<font color=\"blue\"><b>Loaded configuration: </font></b>%1. No headerfiles written. <b>To update configuration please save this file!</b><br>")
            : QStringLiteral("<font color=\"blue\"><b>New configuration: </font></b>%1. No headerfiles written. <b>To update configuration please save this file!</b><br>");
        consolePrint(form.arg(configurationName.isEmpty() ? m_path : configurationName));
    }

    for (DataClass *data : qAsConst(m_tables.dataValues))
        data->applyDefault();
    // Defaults first, signals afterwards: a default must not cause actions.
    const QString notFound = QStringLiteral("<font color=\"red\"> <b>XML Error: </b></font><b>Not found in svd file: %1<br>");
    for (ActiveElement *element : m_tables.elementList) {
        element->applyDefault();
        if (!element->property("svd").toString().isEmpty()) {
            const QString define = element->define();
            const DefineText parts = DefineText::parse(define);
            const Peripheral *peripheral = m_model->findPeripheral(parts.peripheral);
            const Register *reg = peripheral ? HardwareModel::findRegister(peripheral, parts.registerName) : nullptr;
            const bool fieldMissing = reg && parts.hasField && !HardwareModel::findField(reg, parts.field);
            if (!reg || reg->size == 0 || fieldMissing)
                consolePrint(notFound.arg(define));
        }
        element->connectSignals();
    }

    // The description's lock strings are checked once the signals are in
    // place; then each element announces the locks of its start value, so
    // that, for instance, an inverted check box that starts unchecked locks
    // at once.
    m_locks->checkAfterLoad();
    reapplyLocks();
    checkFormulaOperands();
}

void Document::checkFormulaOperands()
{
    // Every name a formula reads must stand for something; one report per
    // name, in a stable order.
    ExpressionEvaluator evaluator(&m_tables);
    QStringList names = m_tables.mathDependents.keys();
    names.sort();
    for (const QString &name : qAsConst(names)) {
        if (!evaluator.isDefined(Expression::Operand::fromToken(name)))
            Report::formulaElementUndefined(name);
    }
}

void Document::applyBranchSwitches()
{
    for (Container *container : qAsConst(m_tables.containers)) {
        if (auto *tree = dynamic_cast<TreeWidget *>(container))
            tree->applyBranchSwitches();
    }
}

void Document::reapplyLocks()
{
    m_locks->releaseAll();
    // A source in a switched-off branch holds nothing.
    applyBranchSwitches();
    for (ActiveElement *element : m_tables.elementList.toList())
        element->emitLocks();
}

void Document::refreshDisplays()
{
    if (DataClass *dummy = m_tables.dataValue(QStringLiteral("dummy_define")))
        dummy->setValue(0);
}

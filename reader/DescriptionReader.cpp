#include "reader/DescriptionReader.h"

#include "device/CLog.h"
#include "device/ELFReader.h"

#include "config/Checksum.h"
#include "elements/AbsoluteWidget.h"
#include "elements/DocumentTables.h"
#include "elements/GridWidget.h"
#include "elements/GroupBox.h"
#include "elements/HorizontalWidget.h"
#include "elements/MessageSink.h"
#include "elements/NumberFormat.h"
#include "elements/Reports.h"
#include "elements/SlotWiring.h"
#include "elements/TabWidget.h"
#include "elements/TreeWidget.h"
#include "elements/TreeWidgetItem.h"
#include "elements/VerticalWidget.h"
#include "reader/CommonAttributes.h"
#include "reader/ElementAttributes.h"
#include "reader/ElementReaders.h"
#include "reader/PythonCheck.h"
#include "reader/StartCondition.h"
#include "reader/ToolTipConfig.h"
#include "reader/VersionCheck.h"
#include "config/ParameterMap.h"
#include "views/PinMappingDocument.h"
#include "views/PinMappingReader.h"
#include "shell/AppVersion.h"
#include "shell/Console.h"

#include <QBoxLayout>
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFrame>
#include <QRegularExpression>
#include <QTextCodec>
#include <QWidget>

namespace {

// Deep enough for any real description, shallow enough that a chain of
// includes can never exhaust the stack.
const int kMaxIncludeDepth = 32;
// Each level of elements inside elements is a level of recursion of the
// reader (and later of Qt's layouts and deletes): a document of 100,000
// nested containers overflowed the stack. Hand-written forms nest a dozen
// levels or so.
const int kMaxNesting = 256;
// Includes read for one description, all levels together.
const int kMaxIncludes = 10000;

bool isContainerName(const QString &name)
{
    return name == QLatin1String("tabcontainer") || name == QLatin1String("absolutecontainer")
        || name == QLatin1String("groupcontainer") || name == QLatin1String("treecontainer")
        || name == QLatin1String("horizontalcontainer") || name == QLatin1String("gridcontainer")
        || name == QLatin1String("verticalcontainer");
}

QString prefixFor(const QString &kind)
{
    if (kind == QLatin1String("tabcontainer"))
        return QStringLiteral("TAB");
    if (kind == QLatin1String("absolutecontainer"))
        return QStringLiteral("ABSOLUTE");
    if (kind == QLatin1String("groupcontainer"))
        return QStringLiteral("GROUP");
    if (kind == QLatin1String("treecontainer"))
        return QStringLiteral("TREE");
    if (kind == QLatin1String("horizontalcontainer"))
        return QStringLiteral("HORIZ");
    if (kind == QLatin1String("gridcontainer"))
        return QStringLiteral("GRID");
    return QStringLiteral("VERT");
}

// The document's text. The stream reads the decoded text, so that its
// character offsets are offsets into the text the kept elements are cut
// from; the encoding is the one the document declares.
QString decodeDocument(const QByteArray &bytes)
{
    QTextCodec *codec = QTextCodec::codecForUtfText(bytes, nullptr);
    if (!codec) {
        static const QRegularExpression declared(QStringLiteral("^\\s*<\\?xml[^>]*encoding\\s*=\\s*[\"']([^\"']+)[\"']"));
        const QRegularExpressionMatch m = declared.match(QString::fromLatin1(bytes.left(200)));
        if (m.hasMatch())
            codec = QTextCodec::codecForName(m.captured(1).toLatin1());
    }
    if (!codec)
        codec = QTextCodec::codecForName("UTF-8");
    return codec->toUnicode(bytes);
}

bool isFoldedName(const QString &name)
{
    return name == QLatin1String("include") || name == QLatin1String("header") || name == QLatin1String("version");
}

KeptElement::Attributes attributePairs(const QXmlStreamAttributes &a)
{
    KeptElement::Attributes pairs;
    pairs.reserve(a.size());
    for (const QXmlStreamAttribute &attribute : a)
        pairs.append({attribute.qualifiedName().toString(), attribute.value().toString()});
    return pairs;
}

QString rootNameFor(const QString &kind)
{
    return prefixFor(kind) + QStringLiteral("_ROOT");
}

// Stands in for the scroll area that will hold the root container: the
// root is made by the same factories as every other container.
class RootHost : public Container
{
public:
    void addWidget(QWidget *, const QString &, int) override {}
    QString objectName() const override { return QString(); }
    QWidget *containerWidget() override { return nullptr; }
    QWidget *child = nullptr;

protected:
    QWidget *childParent() override { return nullptr; }
    void placeChild(QWidget *widget, const QString &, int) override { child = widget; }
};

} // namespace

DescriptionReader::DescriptionReader(DocumentTables &tables, const ReaderOptions &options)
    : m_tables(tables)
    , m_options(options)
{
    registerBuiltinHandlers();
    ElementReaders::install(*this);
}

DescriptionReader::~DescriptionReader()
{
    // A root that nobody took (a failed read) goes with the reader.
    delete m_root;
}

QWidget *DescriptionReader::takeRootWidget()
{
    QWidget *root = m_root;
    m_root = nullptr;
    return root;
}

void DescriptionReader::registerHandler(const QString &name, Handler handler)
{
    m_handlers.insert(name, std::move(handler));
}

bool DescriptionReader::read(QIODevice *device, const QString &fileName)
{
    m_fileName = QFileInfo(fileName).absoluteFilePath();
    m_folder = QFileInfo(fileName).absolutePath();
    m_state = DocumentState();
    m_includeStack = QStringList(QFileInfo(fileName).canonicalFilePath());

    m_content = device->readAll();
    device->seek(0);
    m_text = decodeDocument(m_content);
    m_state.kept = std::make_shared<KeptElement>();
    m_state.kept->name = QStringLiteral("nvxmlcfg");
    m_keptStack = {m_state.kept.get()};
    m_ownStream.reset(new QXmlStreamReader(m_text));
    m_xml = m_ownStream.get();

    // An empty form is a success; a stream error before the first element
    // (an empty, binary or non-XML file) is not.
    if (!m_xml->readNextStartElement())
        return !m_xml->hasError();

    if (readRoot())
        return true;
    // Half a form is no form: what was built goes, and the caller empties
    // the tables that point into it.
    delete m_root;
    m_root = nullptr;
    return false;
}

bool DescriptionReader::readRoot()
{
    const QString rootName = m_xml->name().toString();
    const QString version = m_xml->attributes().value(QLatin1String("version")).toString();
    if (!checkVersion(rootName, version))
        return false;

    bool pendingChild = false;
    if (!checkChecksum(m_content, pendingChild))
        Report::fileManipulated(m_fileName);

    bool containerFound = false;
    bool ok = true;
    if (pendingChild)
        ok = readRootLevelElement(containerFound);
    while (ok && !containerFound && !m_xml->hasError()) {
        if (!m_xml->readNextStartElement())
            break;
        ok = readRootLevelElement(containerFound);
    }
    if (m_xml->hasError())
        return false;
    if (!containerFound || !ok) {
        Report::notStartingWithContainer(m_fileName);
        if (!m_xml->hasError())
            m_xml->raiseError(QStringLiteral("Not starting with a container type!"));
        return false;
    }
    return true;
}

bool DescriptionReader::checkVersion(const QString &rootName, const QString &version)
{
    const bool homePage = !m_options.homePage.isEmpty()
        && QFileInfo(m_options.homePage).absoluteFilePath() == m_fileName;
    switch (VersionCheck::check(rootName, version, homePage)) {
    case VersionCheck::Accepted:
        m_documentVersion = version;
        if (m_includeStack.size() <= 1)
            m_state.rootVersion = version;
        return true;
    case VersionCheck::OnlyV1:
        showError(VersionCheck::v1OnlyText());
        m_xml->raiseError(VersionCheck::v1OnlyText());
        return false;
    case VersionCheck::TooNew:
        break;
    }
    Report::wrongVersion(AppVersion::text(), m_fileName, version);
    m_xml->raiseError(QStringLiteral("Error: Wrong Version of Quillon.\n%2 requires minimum Quillon %3\nCurrent version of Quillon is %1\n")
                          .arg(AppVersion::text(), m_fileName, version));
    return false;
}

bool DescriptionReader::checkChecksum(const QByteArray &bytes, bool &pendingChild)
{
    pendingChild = false;
    if (!m_xml->readNextStartElement())
        return false;
    if (m_xml->name() != QLatin1String("checksum")) {
        // Not a checksum: the element still belongs to the document.
        pendingChild = true;
        return false;
    }
    const QString stated = m_xml->readElementText().trimmed();
    const QString digest = Checksum::computeChecksum(bytes, m_fileName);
    return !digest.isEmpty() && digest == stated;
}

bool DescriptionReader::readRootLevelElement(bool &containerFound)
{
    const QString name = m_xml->name().toString();
    const QXmlStreamAttributes a = m_xml->attributes();
    auto attr = [&a](const char *n) { return a.value(QLatin1String(n)).toString(); };
    const int start = startTagOffset();
    auto kept = std::make_shared<KeptElement>();
    kept->name = name;
    kept->attributes = attributePairs(a);
    KeptElement *parent = m_keptStack.last();

    if (isContainerName(name)) {
        containerFound = true;
        RootHost host;
        parent->children.append(kept);
        m_keptStack.append(kept.get());
        readContainer(&host, name, rootNameFor(name));
        m_keptStack.removeLast();
        m_root = host.child;
        return true;
    }
    if (name == QLatin1String("version")) {
        // The form editor writes the whole document inside `version`: its
        // children are root-level elements like any other.
        readVersionWith([this, &containerFound]() {
            if (readRootLevelElement(containerFound))
                return true;
            if (m_xml->hasError())
                return false;
            m_xml->skipCurrentElement();
            return true;
        });
        return !m_xml->hasError();
    }
    const bool ok = readRootLevelElementOf(name, a, attr);
    if (ok) {
        keepRead(kept.get(), start);
        parent->children.append(kept);
    }
    return ok;
}

bool DescriptionReader::readRootLevelElementOf(const QString &name, const QXmlStreamAttributes &a,
                                               const std::function<QString(const char *)> &attr)
{

    if (name == QLatin1String("svd") || name == QLatin1String("parametermap") || name == QLatin1String("elf")
        || name == QLatin1String("migration") || name == QLatin1String("disclaimer")
        || name == QLatin1String("pinmapping")) {
        readFileElement(name);
        return true;
    }
    if (name == QLatin1String("fwversion")) {
        m_state.fwVersionMin = attr("min");
        m_state.fwVersionMax = attr("max");
    } else if (name == QLatin1String("infosource")) {
        m_state.forumUrl = attr("forumurl");
        m_state.forumTooltip = attr("tooltip");
    } else if (name == QLatin1String("documents")) {
        m_state.documentsFolder = attr("path");
    } else if (name == QLatin1String("ioconfig")) {
        m_state.ioPort = attr("port").trimmed().toUpper();
        m_state.ioSettings = attr("settings").trimmed().toUpper();
    } else if (name == QLatin1String("terminal")) {
        m_state.terminalPort = attr("port").trimmed().toUpper();
        m_state.terminalSettings = attr("settings").trimmed();
    } else if (name == QLatin1String("iocheck")) {
        m_state.iocheckMode = a.hasAttribute(QLatin1String("mode")) ? quint16(attr("mode").toUInt()) : 1;
        m_state.iocheckSet = true;
    } else if (name == QLatin1String("loadsaveallowed")) {
        m_state.loadSaveAllowed = attr("value").toInt() != 0;
        m_state.loadSaveAllowedSet = true;
    } else if (name == QLatin1String("tooltipconfig")) {
        ToolTipConfig::set(quint32(normaliseNumber(attr("value")).toULongLong()));
    } else if (name == QLatin1String("usesPython")) {
        m_state.usesPython = true;
        if (!PythonCheck::startBridge()) {
            m_xml->raiseError(QStringLiteral("Python integration is not available."));
            return false;
        }
    } else {
        return false;
    }
    m_xml->skipCurrentElement();
    return true;
}

void DescriptionReader::readVersion()
{
    readVersionWith([this]() {
        m_xml->skipCurrentElement();
        return true;
    });
}

void DescriptionReader::readVersionWith(const std::function<bool()> &readChild)
{
    m_state.versionLabel = m_xml->attributes().value(QLatin1String("label")).toString();
    QString text;
    while (!m_xml->atEnd() && !m_xml->hasError()) {
        const QXmlStreamReader::TokenType token = m_xml->readNext();
        if (token == QXmlStreamReader::Characters) {
            text += m_xml->text();
        } else if (token == QXmlStreamReader::StartElement) {
            if (!readChild())
                break;
            // The form was found: the rest of the document is not read.
            if (m_root)
                break;
        } else if (token == QXmlStreamReader::EndElement) {
            break;
        }
    }
    m_state.versionText = text.trimmed();
}

int DescriptionReader::startTagOffset() const
{
    const int end = int(m_xml->characterOffset());
    const int at = m_text.lastIndexOf(QLatin1Char('<'), qMax(0, end - 1));
    return at < 0 ? end : at;
}

void DescriptionReader::keepRead(KeptElement *element, int start)
{
    const int end = int(m_xml->characterOffset());
    if (element->children.isEmpty() && start >= 0 && end >= start)
        element->text = m_text.mid(start, end - start);
}

void DescriptionReader::noteElement(QObject *object)
{
    if (m_keptStack.size() < 2 || !object)
        return;
    KeptElement *element = m_keptStack.last();
    if (element->hadTarget)
        return;
    element->target = object;
    element->hadTarget = true;
}

bool DescriptionReader::readFileElement(const QString &kind)
{
    const QXmlStreamAttributes a = m_xml->attributes();
    const QString file = a.value(QLatin1String("file")).toString();
    auto existsInFolder = [this](const QString &name) {
        return !name.isEmpty() && QFileInfo::exists(QDir(m_folder).filePath(name));
    };
    if (kind == QLatin1String("svd")) {
        if (!file.isEmpty())
            m_state.svdName = file;
        if (!existsInFolder(file))
            xmlMessage(QStringLiteral("SVD file is missing."), QString(), true);
    } else if (kind == QLatin1String("parametermap")) {
        m_state.parameterMapFile = file;
        const QString found = findFile(file);
        if (found.isEmpty()) {
            xmlMessage(QStringLiteral("Parametermap file \"%1\"is missing.").arg(file), QString(), true);
        } else {
            m_state.parameterMap = std::make_shared<ParameterMap>();
            m_state.parameterMap->readFile(found);
        }
    } else if (kind == QLatin1String("pinmapping")) {
        const QString cond = a.value(QLatin1String("startcond")).toString();
        if (cond.isEmpty() || StartCondition::holds(cond, m_options.defines)) {
            m_state.pinMappingFile = file;
            if (!existsInFolder(file)) {
                xmlMessage(QStringLiteral("Pinmapping file is missing."), QString(), true);
            } else {
                auto mapping = std::make_shared<PinMappingDocument>();
                mapping->descriptionFolder = m_folder;
                mapping->model = m_options.model;
                PinMappingReader::readFile(QDir(m_folder).filePath(file), *mapping);
                m_state.pinMapping = mapping;
            }
        }
    } else if (kind == QLatin1String("elf")) {
        m_state.elfFile = file;
        // Relative names are taken from the current directory, as written;
        // the description's folder serves when the current directory has no
        // such file.
        QString elfPath = file;
        if (QFileInfo(file).isRelative() && !QFileInfo::exists(file) && existsInFolder(file))
            elfPath = QDir(m_folder).filePath(file);
        const int code = elfReader().Read(elfPath.toLocal8Bit().constData(), ELFReader::Symbols);
        if (code != 0)
            xmlMessage(QStringLiteral("Problem reading ELF file %1: %2.").arg(file, CLog::ErrorCodeToString(code)),
                       QString(), true);
    } else if (kind == QLatin1String("migration")) {
        m_state.migrationFile = file;
        if (!existsInFolder(file))
            xmlMessage(QStringLiteral("Migration file is missing."), QString(), true);
    } else if (kind == QLatin1String("disclaimer")) {
        if (existsInFolder(file)) {
            m_state.disclaimerName = file;
            m_state.disclaimerSet = true;
        }
        else
            xmlMessage(QStringLiteral("Disclaimer file is missing."), QString(), true);
    }
    m_xml->skipCurrentElement();
    return true;
}

void DescriptionReader::readChildren(Container *container)
{
    readChildrenFrom(container, false);
}

void DescriptionReader::readChildrenFrom(Container *container, bool pendingChild)
{
    // A container that is already being read further up would make a cycle.
    const bool added = !m_containers.contains(container);
    if (added)
        m_containers.append(container);

    if (pendingChild && !m_xml->hasError())
        dispatch(container);
    while (!m_xml->hasError() && m_xml->readNextStartElement())
        dispatch(container);

    if (added)
        m_containers.removeOne(container);
}

void DescriptionReader::dispatch(Container *container)
{
    if (m_nesting >= kMaxNesting) {
        raiseError(QStringLiteral("Elements are nested more than %1 levels deep.").arg(kMaxNesting));
        return;
    }
    const QXmlStreamAttributes a = m_xml->attributes();
    const QString cond = a.value(QLatin1String("startcond")).toString();
    if (a.hasAttribute(QLatin1String("startcond")) && !StartCondition::holds(cond, m_options.defines)) {
        m_xml->skipCurrentElement();
        return;
    }
    const QString name = m_xml->name().toString();
    auto handler = m_handlers.constFind(name);
    if (handler != m_handlers.constEnd()) {
        // Includes, header groups and versions are folded into the element
        // around them; every other element is kept with what it became.
        std::shared_ptr<KeptElement> kept;
        const int start = startTagOffset();
        if (!isFoldedName(name)) {
            kept = std::make_shared<KeptElement>();
            kept->name = name;
            kept->attributes = attributePairs(a);
            m_keptStack.last()->children.append(kept);
            m_keptStack.append(kept.get());
        }
        ++m_nesting;
        handler.value()(*this, container);
        --m_nesting;
        if (kept) {
            m_keptStack.removeLast();
            keepRead(kept.get(), start);
            if (kept->target) {
                kept->readAttributes = ElementAttributes::current(kept->target);
                kept->readChildState = ElementAttributes::childState(kept->target);
            }
        }
        return;
    }
    // Unknown elements are skipped with their content, without a word.
    m_xml->skipCurrentElement();
}

void DescriptionReader::registerBuiltinHandlers()
{
    const char *containerKinds[] = {"tabcontainer", "absolutecontainer", "groupcontainer", "treecontainer",
                                    "horizontalcontainer", "gridcontainer", "verticalcontainer"};
    for (const char *kind : containerKinds) {
        const QString k = QLatin1String(kind);
        registerHandler(k, [k](DescriptionReader &r, Container *c) {
            r.readContainer(c, k, r.nextContainerName(prefixFor(k)));
        });
    }
    registerHandler(QStringLiteral("branch"), [](DescriptionReader &r, Container *c) { r.readBranch(c); });
    registerHandler(QStringLiteral("include"), [](DescriptionReader &r, Container *c) { r.readInclude(c); });
    registerHandler(QStringLiteral("header"), [](DescriptionReader &r, Container *c) { r.readHeader(c); });
    registerHandler(QStringLiteral("version"), [](DescriptionReader &r, Container *c) {
        r.readVersionWith([&r, c]() {
            r.dispatch(c);
            return !r.xml().hasError();
        });
    });
    for (const char *kind : {"svd", "parametermap", "elf", "migration"}) {
        const QString k = QLatin1String(kind);
        registerHandler(k, [k](DescriptionReader &r, Container *) { r.readFileElement(k); });
    }
    registerHandler(QStringLiteral("stretch"), [](DescriptionReader &r, Container *c) {
        const QXmlStreamAttributes a = r.xml().attributes();
        auto *spacer = new QWidget(c->containerWidget());
        spacer->setObjectName(a.value(QLatin1String("define")).toString());
        spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        c->addWidget(spacer, a.value(QLatin1String("label")).toString(), -1);
        CommonAttributes::apply(r, spacer, a);
        r.xml().skipCurrentElement();
    });
    registerHandler(QStringLiteral("horizontalline"), [](DescriptionReader &r, Container *c) {
        const QXmlStreamAttributes a = r.xml().attributes();
        auto *line = new QFrame(c->containerWidget());
        line->setObjectName(a.value(QLatin1String("define")).toString());
        line->setFrameShape(QFrame::HLine);
        line->setFrameShadow(QFrame::Sunken);
        c->addWidget(line, QString(), -1);
        CommonAttributes::apply(r, line, a);
        r.xml().skipCurrentElement();
    });
    registerHandler(QStringLiteral("radiobutton"), [](DescriptionReader &r, Container *) {
        r.xmlMessage(QStringLiteral("Found &lt;radiobutton&gt; element that's not within a &lt;radio&gt; element"),
                     QString(), true);
        r.raiseError(QStringLiteral("Found <radiobutton> element that's not within a <radio> element at line nr.: %1")
                         .arg(r.xml().lineNumber()));
    });
    registerHandler(QStringLiteral("item"), [](DescriptionReader &r, Container *) {
        r.xmlMessage(QStringLiteral("Found &lt;item&gt; element that's not within a &lt;combo&gt; element"),
                     QString(), true);
        r.xml().skipCurrentElement();
    });
}

void DescriptionReader::readHeader(Container *container)
{
    const QString former = m_header;
    m_header = m_xml->attributes().value(QLatin1String("file")).toString();
    readChildren(container);
    m_header = former;
}

QString DescriptionReader::nextContainerName(const QString &prefix) const
{
    return QStringLiteral("%1_%2").arg(prefix).arg(m_tables.containers.size());
}

void DescriptionReader::connectToHost(QObject *sender, const char *signal, const char *slot)
{
    SlotWiring::connectIfPresent(sender, signal, m_options.slotHost, slot);
}

void DescriptionReader::readContainer(Container *parent, const QString &kind, const QString &name)
{
    const QXmlStreamAttributes a = m_xml->attributes();
    auto attr = [&a](const char *n) { return a.value(QLatin1String(n)).toString(); };
    const QString label = attr("label");

    QWidget *widget = nullptr;
    Container *container = nullptr;
    QBoxLayout *box = nullptr;
    if (kind == QLatin1String("tabcontainer")) {
        TabWidget *tab = parent->addTabContainer(label, -1, name);
        tab->setResizePages(attr("resize").toUInt() != 0);
        widget = tab;
        container = tab;
    } else if (kind == QLatin1String("absolutecontainer")) {
        AbsoluteWidget *abs = parent->addAbsoluteContainer(label, -1, name);
        widget = abs;
        container = abs;
    } else if (kind == QLatin1String("groupcontainer")) {
        GroupBox *group = parent->addGroupContainer(label, -1, name);
        widget = group;
        container = group;
        box = group->boxLayout();
    } else if (kind == QLatin1String("treecontainer")) {
        TreeWidget *tree = parent->addTreeContainer(label, -1, name);
        tree->setHeaderLabels(attr("headerlabels"));
        if (a.hasAttribute(QLatin1String("columnwidths")) && !tree->setColumnWidths(attr("columnwidths")))
            xmlMessage(QStringLiteral("\"columnwidths\" attribute invalid."), tree->objectName(), true);
        widget = tree;
        container = tree;
    } else if (kind == QLatin1String("horizontalcontainer")) {
        HorizontalWidget *h = parent->addHorizontalContainer(label, -1, name);
        widget = h;
        container = h;
        box = h->boxLayout();
    } else if (kind == QLatin1String("gridcontainer")) {
        GridWidget *grid = parent->addGridContainer(label, -1, name);
        if (a.hasAttribute(QLatin1String("columns")))
            grid->setColumns(attr("columns").toInt());
        widget = grid;
        container = grid;
    } else {
        VerticalWidget *v = parent->addVerticalContainer(label, -1, name);
        widget = v;
        container = v;
        box = v->boxLayout();
    }
    widget->setProperty("my_label", label);
    m_tables.containers.insert(widget->objectName(), container);

    // Page attributes: the tab's tool tip and the set-defs run when the
    // page is entered or left.
    if (auto *tab = qobject_cast<TabWidget *>(parent->containerWidget())) {
        const int page = tab->indexOf(widget);
        if (a.hasAttribute(QLatin1String("desc")) && page >= 0)
            tab->setTabToolTip(page, attr("desc"));
        const bool select = a.hasAttribute(QLatin1String("selectsetdef"));
        const bool unselect = a.hasAttribute(QLatin1String("unselectsetdef"));
        if (select)
            widget->setProperty("selectsetdef", attr("selectsetdef"));
        if (unselect)
            widget->setProperty("unselectsetdef", attr("unselectsetdef"));
        if ((select || unselect) && widget->metaObject()->indexOfSlot("childSetDef(int)") >= 0)
            QObject::connect(tab, SIGNAL(currentChanged(int)), widget, SLOT(childSetDef(int)));
    }
    connectToHost(widget, SIGNAL(selected_setDef(QString)), SLOT(setDef(QString)));
    if (auto *tab = qobject_cast<TabWidget *>(widget))
        connectToHost(tab, SIGNAL(updateMathLabels()), SLOT(on_updateMathLabel()));

    CommonAttributes::apply(*this, widget, a);

    const int stretch = (kind == QLatin1String("verticalcontainer") || kind == QLatin1String("horizontalcontainer")
                         || kind == QLatin1String("groupcontainer"))
        ? attr("stretch").toInt()
        : 0;
    if (box && stretch != 0)
        box->addStretch(stretch);
    readChildren(container);
    if (box && stretch != 0)
        box->addStretch(stretch);
}

void DescriptionReader::readBranch(Container *container)
{
    TreeWidget *tree = qobject_cast<TreeWidget *>(container->containerWidget());
    auto *parentRow = dynamic_cast<TreeWidgetItem *>(container);
    if (!tree) {
        xmlMessage(QStringLiteral("Found &lt;branch&gt; element that's not within a &lt;treecontainer&gt; element"),
                   QString(), false);
        m_xml->skipCurrentElement();
        return;
    }
    const QXmlStreamAttributes a = m_xml->attributes();
    const QString label = a.value(QLatin1String("label")).toString();
    TreeWidgetItem *branch = tree->addBranch(parentRow, label, -1, nextContainerName(QStringLiteral("BRANCH")));
    m_tables.containers.insert(branch->objectName(), branch);
    if (a.hasAttribute(QLatin1String("expand")))
        branch->applyExpand(a.value(QLatin1String("expand")).toInt());
    readChildren(branch);
}

QString DescriptionReader::findFile(const QString &name) const
{
    if (name.isEmpty())
        return QString();
    if (QFileInfo(name).isAbsolute())
        return QFileInfo::exists(name) ? name : QString();
    const QString inFolder = QDir(m_folder).filePath(name);
    if (QFileInfo::exists(inFolder))
        return inFolder;
    if (QFileInfo::exists(name))
        return QFileInfo(name).absoluteFilePath();
    return QString();
}

void DescriptionReader::raiseError(const QString &text)
{
    if (!m_xml->hasError())
        m_xml->raiseError(text);
}

void DescriptionReader::readInclude(Container *container)
{
    const QXmlStreamAttributes a = m_xml->attributes();
    const QString name = m_xml->readElementText(QXmlStreamReader::SkipChildElements).trimmed();

    // Look in the current folder, then along the -i paths; a relative path
    // there is taken under the document's folder.
    QString path = QDir(m_folder).filePath(name);
    if (!QFileInfo::exists(path)) {
        const QStringList paths = m_options.includePaths.split(QLatin1Char(';'), Qt::SkipEmptyParts);
        for (const QString &p : paths) {
            const QString base = QFileInfo(p).isAbsolute() ? p : QDir(m_folder).filePath(p);
            const QString candidate = QDir(base).filePath(name);
            if (QFileInfo::exists(candidate)) {
                path = candidate;
                break;
            }
        }
    }

    // Only regular files: a device never ends (/dev/zero would be read until
    // memory runs out) and opening a pipe waits for a writer for ever.
    if (!name.isEmpty() && QFileInfo::exists(path) && !QFileInfo(path).isFile()) {
        raiseError(Report::cannotOpenFileText(QFileInfo(path).absoluteFilePath(), QStringLiteral("Not a regular file.")));
        return;
    }
    QFile file(path);
    if (name.isEmpty() || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        raiseError(Report::cannotOpenFileText(QFileInfo(path).absoluteFilePath(),
                                              name.isEmpty() ? QStringLiteral("No file name given.") : file.errorString()));
        return;
    }
    const QString canonical = QFileInfo(path).canonicalFilePath();
    if (m_includeStack.contains(canonical) || m_includeStack.size() > kMaxIncludeDepth) {
        raiseError(Report::cannotReadFileText(canonical, QStringLiteral("The file includes itself (%1).")
                                                             .arg(m_includeStack.join(QStringLiteral(" -> ")))));
        return;
    }
    // Files that include others several times multiply: ten levels that
    // each include the next ten times are 10^10 reads, and the reader would
    // never finish. Forms built from per-pin templates use a few thousand.
    if (++m_includeCount > kMaxIncludes) {
        raiseError(Report::cannotReadFileText(canonical, QStringLiteral("More than %1 includes in one description.")
                                                             .arg(kMaxIncludes)));
        return;
    }
    const QByteArray original = file.readAll();
    file.close();

    QByteArray bytes = original;
    for (const QXmlStreamAttribute &attribute : a) {
        if (attribute.name() == QLatin1String("startcond"))
            continue;
        bytes.replace(QByteArray("$") + attribute.name().toUtf8() + QByteArray("$"), attribute.value().toUtf8());
    }

    // The included file is read on a stream of its own, so positions in
    // messages are those of the file they name.
    const QString formerFile = m_fileName;
    const QString formerFolder = m_folder;
    const QString formerVersion = m_documentVersion;
    QXmlStreamReader *formerStream = m_xml;
    const QString formerText = m_text;
    m_text = decodeDocument(bytes);
    QXmlStreamReader nested(m_text);
    m_xml = &nested;
    m_fileName = QFileInfo(path).absoluteFilePath();
    m_folder = QFileInfo(path).absolutePath();
    m_includeStack.append(canonical);

    bool ok = true;
    if (nested.readNextStartElement()) {
        const QString version = nested.attributes().value(QLatin1String("version")).toString();
        const VersionCheck::Verdict verdict = VersionCheck::check(QStringLiteral("nvxmlcfg"), version, false);
        if (verdict != VersionCheck::Accepted) {
            ok = checkVersion(QStringLiteral("nvxmlcfg"), version);
        }
        if (ok) {
            bool pendingChild = false;
            if (!checkChecksum(original, pendingChild))
                Report::fileManipulated(m_fileName);
            readChildrenFrom(container, pendingChild);
        }
    }
    QString nestedError;
    if (nested.hasError())
        nestedError = errorString();

    m_includeStack.removeLast();
    m_xml = formerStream;
    m_text = formerText;
    m_fileName = formerFile;
    m_folder = formerFolder;
    m_documentVersion = formerVersion;

    if (!nestedError.isEmpty())
        raiseError(Report::cannotReadFileText(QFileInfo(path).absoluteFilePath(), nestedError));
}

bool DescriptionReader::checkDuplicateDefine(const QString &define, DefineTable table)
{
    if (define.isEmpty())
        return false;
    QString text;
    switch (table) {
    case ElementDefine:
        if (m_tables.elements.value(define))
            text = QStringLiteral("Duplicate define ");
        break;
    case PushButtonDefine:
        if (m_tables.pushButtons.value(define))
            text = QStringLiteral("Duplicate define PushButton");
        break;
    case VarDefine:
        if (m_tables.dataValues.value(define))
            text = QStringLiteral("Duplicate define Var");
        break;
    case ImageDefine:
        if (m_tables.images.value(define))
            text = QStringLiteral("Duplicate define Image");
        break;
    }
    if (text.isEmpty())
        return false;
    xmlMessage(text, define, true);
    return true;
}

QString DescriptionReader::positionText(bool withBreak) const
{
    const QString link = Console::fileLink(m_fileName, m_xml->lineNumber(), m_xml->columnNumber());
    QString text = QStringLiteral("<b><a href=\"%1\">file</a> line %2, column %3</b><b>")
                       .arg(link)
                       .arg(m_xml->lineNumber())
                       .arg(m_xml->columnNumber());
    if (withBreak)
        text += QLatin1String("<br>");
    return text;
}

QString DescriptionReader::errorString() const
{
    if (!m_xml)
        return QString();
    return m_xml->errorString() + QLatin1Char(' ') + positionText(true);
}

void DescriptionReader::xmlMessage(const QString &text, const QString &define, bool isError)
{
    const QString form = isError ? QStringLiteral("<b><font color=\"red\"> XML Error: </font>%1 <a href=\"%2\">%3</a> (%4)<br>")
                                 : QStringLiteral("<b><font color=\"orange\"> XML Warning: </font>%1 <a href=\"%2\">%3</a> (%4)<br>");
    consolePrint(form.arg(text, Console::linkTarget(define), define, positionText(false)));
}

ELFReader &DescriptionReader::elfReader()
{
    if (!m_elf)
        m_elf.reset(new ELFReader);
    return *m_elf;
}

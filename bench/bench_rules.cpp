// Times one change through the rule engines in a small and in a large form,
// side by side: a change must only visit what depends on it, so the cost
// has to stay the same whatever the size of the form.
//
//   bench_rules [small large]      (default: 100 10000)
//
// Math cascade: one spin box feeds 10 math labels; every other label of
//   the form reads a second spin box that does not change.
// Lock chain: a check box locks a list, which locks the next list, ten
//   links deep; every other element of the form is a check box locking a
//   spin box of its own.
//
// Each figure is the median, over 7 rounds, of the mean time of one change
// in a round of 200 changes.

#include "config/Checksum.h"
#include "elements/CheckBox.h"
#include "elements/DocumentTables.h"
#include "elements/MathLabel.h"
#include "elements/SpinBox.h"
#include "shell/Document.h"
#include "shell/MainWindow.h"
#include "shell/StartOptions.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

const int rounds = 7;
const int changesPerRound = 200;
const int fed = 10;

const char *svdText =
    "<?xml version=\"1.0\"?>\n<device><name>BENCH</name><peripherals><peripheral><name>B</name>"
    "<baseAddress>0x40000000</baseAddress><registers><register><name>R</name><addressOffset>0</addressOffset>"
    "<size>32</size></register></registers></peripheral></peripherals></device>\n";

QString frame(const QString &body)
{
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<nvxmlcfg version=\"2.5.0\">\n\t<checksum>")
        + Checksum::placeholder() + QStringLiteral("</checksum>\n<svd file=\"bench.svd\"/>\n<verticalcontainer>\n") + body
        + QStringLiteral("</verticalcontainer>\n</nvxmlcfg>\n");
}

QString cascadeForm(int labels)
{
    QString body = QStringLiteral("<spinbox define=\"SRC\" svd=\"0\" range=\"0;1000\"/>\n"
                                  "<spinbox define=\"OTHER\" svd=\"0\" range=\"0;1000\"/>\n");
    for (int i = 0; i < labels; ++i) {
        const QString source = i < fed ? QStringLiteral("SRC") : QStringLiteral("OTHER");
        body += QStringLiteral("<math define=\"L%1\" formula=\"%2 * 3 + %1\" format=\"%d\"/>\n").arg(i).arg(source);
    }
    return frame(body);
}

QString lockForm(int elements)
{
    QString body = QStringLiteral("<checkbox define=\"HEAD\" svd=\"0\" lockon=\"C0=1\"/>\n");
    for (int i = 0; i < fed; ++i) {
        const QString next = i + 1 < fed ? QStringLiteral(" lockon=\"C%1=1\"").arg(i + 1) : QString();
        body += QStringLiteral("<combo define=\"C%1\" svd=\"0\"><item label=\"a\" value=\"0\"/>"
                               "<item label=\"b\" value=\"1\"%2/></combo>\n")
                    .arg(i)
                    .arg(next);
    }
    for (int i = 1 + fed; i + 1 < elements; i += 2) {
        body += QStringLiteral("<checkbox define=\"F%1\" svd=\"0\" lockon=\"S%1=5\"/>\n"
                               "<spinbox define=\"S%1\" svd=\"0\" range=\"0;10\"/>\n")
                    .arg(i);
    }
    return frame(body);
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// Mean microseconds of one change, median over the rounds.
double timeChanges(const std::function<void(int)> &change)
{
    std::vector<double> means;
    int step = 0;
    for (int r = 0; r < rounds; ++r) {
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < changesPerRound; ++i)
            change(step++);
        means.push_back(double(timer.nsecsElapsed()) / 1000.0 / changesPerRound);
    }
    return median(means);
}

struct OpenForm
{
    QTemporaryDir dir;
    MainWindow *window = nullptr;

    bool open(const QString &text)
    {
        QFile svd(dir.filePath(QStringLiteral("bench.svd")));
        if (!svd.open(QIODevice::WriteOnly))
            return false;
        svd.write(svdText);
        svd.close();
        const QString path = dir.filePath(QStringLiteral("bench.xml"));
        QFile xml(path);
        if (!xml.open(QIODevice::WriteOnly))
            return false;
        xml.write(Checksum::signedText(text));
        xml.close();
        StartOptions options;
        options.quiet = true;
        window = new MainWindow(options);
        if (!window->open(path))
            return false;
        window->startUp(false);
        return true;
    }
    template <class T>
    T *element(const QString &define) const
    {
        return dynamic_cast<T *>(window->document()->tables().element(define));
    }
    ~OpenForm() { delete window; }
};

// Cost of one change of SRC; checks that the fed labels follow.
double cascade(int labels)
{
    OpenForm form;
    if (!form.open(cascadeForm(labels)))
        return -1;
    auto *src = form.element<SpinBox>(QStringLiteral("SRC"));
    auto *last = form.window->findChild<MathLabel *>(QStringLiteral("L%1").arg(fed - 1));
    if (!src || !last)
        return -1;
    const double us = timeChanges([src](int step) { src->setValue(QString::number(step % 1000), 0); });
    src->setValue(QStringLiteral("7"), 0);
    if (last->text().toInt() != 7 * 3 + fed - 1) {
        std::fprintf(stderr, "cascade: L%d shows %s\n", fed - 1, qPrintable(last->text()));
        return -1;
    }
    return us;
}

// Cost of one click of HEAD, which locks or frees the chain of ten lists.
double lockChain(int elements)
{
    OpenForm form;
    if (!form.open(lockForm(elements)))
        return -1;
    auto *head = form.element<CheckBox>(QStringLiteral("HEAD"));
    auto *tail = form.element<QWidget>(QStringLiteral("C%1").arg(fed - 1));
    if (!head || !tail)
        return -1;
    const double us = timeChanges([head](int) { head->click(); });
    if (head->isChecked() == tail->isEnabled()) {
        std::fprintf(stderr, "lock chain: the last list does not follow the head\n");
        return -1;
    }
    return us;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int small = argc > 2 ? atoi(argv[1]) : 100;
    const int large = argc > 2 ? atoi(argv[2]) : 10000;

    std::printf("%-22s %10s %10s %8s\n", "one change", "n=small", "n=large", "ratio");
    const double cs = cascade(small), cl = cascade(large);
    std::printf("%-22s %8.1fus %8.1fus %8.2f   (%d vs %d math labels, %d fed)\n", "math cascade", cs, cl, cl / cs,
                small, large, fed);
    const double ls = lockChain(small), ll = lockChain(large);
    std::printf("%-22s %8.1fus %8.1fus %8.2f   (%d vs %d elements, chain of %d)\n", "lock chain", ls, ll, ll / ls,
                small, large, fed);
    return (cs < 0 || cl < 0 || ls < 0 || ll < 0) ? 1 : 0;
}

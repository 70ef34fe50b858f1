#include "tooling/EditCurvesDialog.h"

#include "elements/DocumentTables.h"
#include "elements/Selectors.h"
#include "tooling/AttributeApplier.h"
#include "tooling/ColorDelegate.h"
#include "views/MyQwtPlot.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>
#include <qwt_plot_curve.h>

namespace {

enum Column { Index, Label, Color, Data, ColumnCount };

QString feedName(const QString &data)
{
    return Selectors::hasSelector(data) ? Selectors::stripSelector(data) : data;
}

} // namespace

EditCurvesDialog::EditCurvesDialog(MyQwtPlot *plot, QWidget *parent)
    : QDialog(parent)
    , m_plot(plot)
    , m_model(new QStandardItemModel(0, ColumnCount, this))
    , m_view(new QTableView(this))
{
    setWindowTitle(tr("Curves within the plot element"));
    m_model->setHorizontalHeaderLabels({tr("Index"), tr("Label"), tr("Color"), tr("Data")});
    m_view->setModel(m_model);
    m_view->horizontalHeader()->setStretchLastSection(true);
    m_view->setItemDelegateForColumn(Color, new ColorDelegate(nullptr, this));

    auto *insert = new QPushButton(tr("Insert"), this);
    auto *remove = new QPushButton(tr("Delete"), this);
    connect(insert, &QPushButton::clicked, this, &EditCurvesDialog::insertLine);
    connect(remove, &QPushButton::clicked, this, &EditCurvesDialog::deleteLine);
    auto *box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    box->addButton(insert, QDialogButtonBox::ActionRole);
    box->addButton(remove, QDialogButtonBox::ActionRole);
    connect(box, &QDialogButtonBox::accepted, this, &EditCurvesDialog::accept);
    connect(box, &QDialogButtonBox::rejected, this, &EditCurvesDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_view);
    layout->addWidget(box);
    resize(560, 300);

    if (!plot)
        return;
    // The data texts as written (with selectors) where the reader kept them.
    const QStringList written = plot->property("data").toStringList();
    for (int i = 0; i < plot->curveCount(); ++i) {
        const QwtPlotCurve *curve = plot->curve(i);
        const QString data = i < written.size() ? written.at(i) : plot->curveData(i);
        m_model->appendRow({new QStandardItem(QString::number(i)), new QStandardItem(curve->title().text()),
                            new QStandardItem(ColorDelegate::text(curve->pen().color())), new QStandardItem(data)});
    }
}

void EditCurvesDialog::insertLine()
{
    const QModelIndex current = m_view->currentIndex();
    const int at = current.isValid() ? current.row() + 1 : m_model->rowCount();
    m_model->insertRow(at, {new QStandardItem(QString::number(at)), new QStandardItem,
                            new QStandardItem(QStringLiteral("0;0;255")), new QStandardItem});
    m_view->setCurrentIndex(m_model->index(at, Data));
}

void EditCurvesDialog::deleteLine()
{
    const QModelIndex current = m_view->currentIndex();
    if (current.isValid())
        m_model->removeRow(current.row());
}

void EditCurvesDialog::accept()
{
    if (m_plot) {
        DocumentTables *tables = DocumentTables::current();
        if (tables) {
            for (auto it = tables->curveDependents.begin(); it != tables->curveDependents.end();) {
                it->removeAll(m_plot.data());
                it = it->isEmpty() ? tables->curveDependents.erase(it) : std::next(it);
            }
        }
        m_plot->removeCurves();
        QStringList dataNames;
        for (int row = 0; row < m_model->rowCount(); ++row) {
            auto cell = [this, row](int column) { return m_model->item(row, column)->text().trimmed(); };
            int rgb[3];
            const QColor color = AttributeApplier::parseRgb(cell(Color), rgb) ? QColor(rgb[0], rgb[1], rgb[2]) : QColor();
            const QString data = cell(Data);
            m_plot->addCurve(cell(Label), 1, color, feedName(data));
            dataNames << data;
            if (tables && !feedName(data).isEmpty() && !tables->curveDependents[feedName(data)].contains(m_plot.data()))
                tables->curveDependents[feedName(data)].append(m_plot.data());
        }
        m_plot->setProperty("data", dataNames);
        m_plot->replot();
    }
    QDialog::accept();
}

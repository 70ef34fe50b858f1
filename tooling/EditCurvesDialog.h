#pragma once
#include <QDialog>
#include <QPointer>

class MyQwtPlot;
class QStandardItemModel;
class QTableView;

// "Curves within the plot element": one row per curve (label, colour as
// "%1;%2;%3", the define it draws). accept() replaces the plot's curves
// with new ones, each with a new series, rewrites the plot's `data` list
// and the curve feeds of the document, and gives labelled curves a legend.
class EditCurvesDialog : public QDialog
{
    Q_OBJECT
public:
    explicit EditCurvesDialog(MyQwtPlot *plot, QWidget *parent = nullptr);

    QStandardItemModel *model() const { return m_model; }
    QTableView *view() const { return m_view; }

public slots:
    void insertLine();
    void deleteLine();
    void accept() override;

private:
    QPointer<MyQwtPlot> m_plot;
    QStandardItemModel *m_model;
    QTableView *m_view;
};

#include "tooling/XMLPropertiesDialog.h"

#include "reader/DocumentState.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

XMLPropertiesDialog::XMLPropertiesDialog(DocumentState &state, QWidget *parent)
    : QDialog(parent)
    , m_state(state)
{
    setWindowTitle(tr("Edit XML properties"));
    auto *grid = new QGridLayout;

    QCheckBox *row = addRow(grid, tr("Version"), QStringLiteral("version"), !state.versionLabel.isEmpty());
    addEditor(grid, row, 1, tr("Version: "), QStringLiteral("version"), state.versionLabel);

    row = addRow(grid, tr("Firmware version"), QStringLiteral("fw"),
                 !state.fwVersionMin.isEmpty() || !state.fwVersionMax.isEmpty());
    addEditor(grid, row, 1, tr("Min-Version: "), QStringLiteral("fwMin"), state.fwVersionMin);
    addEditor(grid, row, 3, tr("Max-Version: "), QStringLiteral("fwMax"), state.fwVersionMax);

    row = addRow(grid, tr("SVD file"), QStringLiteral("svd"), !state.svdName.isEmpty());
    addEditor(grid, row, 1, tr("SVD-File: "), QStringLiteral("svd"), state.svdName);

    row = addRow(grid, tr("Migration file"), QStringLiteral("migration"), !state.migrationFile.isEmpty());
    addEditor(grid, row, 1, tr("Migration-File: "), QStringLiteral("migration"), state.migrationFile);

    row = addRow(grid, tr("Disclaimer file"), QStringLiteral("disclaimer"), state.disclaimerSet);
    addEditor(grid, row, 1, tr("Disclaimer-File: "), QStringLiteral("disclaimer"),
              state.disclaimerSet ? state.disclaimerName : QString());

    row = addRow(grid, tr("I/O config"), QStringLiteral("io"), !state.ioPort.isEmpty() || !state.ioSettings.isEmpty());
    addEditor(grid, row, 1, tr("IO-Port: "), QStringLiteral("ioPort"), state.ioPort);
    addEditor(grid, row, 3, tr("Parameters: "), QStringLiteral("ioSettings"), state.ioSettings);

    row = addRow(grid, tr("Load/save allowed"), QStringLiteral("loadSave"), state.loadSaveAllowedSet);
    m_loadSave = new QCheckBox(tr("allowed"), this);
    m_loadSave->setObjectName(QStringLiteral("loadSave"));
    m_loadSave->setChecked(state.loadSaveAllowed);
    m_loadSave->setEnabled(row->isChecked());
    connect(row, &QCheckBox::toggled, m_loadSave, &QWidget::setEnabled);
    grid->addWidget(m_loadSave, grid->rowCount() - 1, 2);

    row = addRow(grid, tr("Info sources"), QStringLiteral("forum"), !state.forumUrl.isEmpty());
    addEditor(grid, row, 1, tr("Forum-URL: "), QStringLiteral("forumUrl"), state.forumUrl);

    // The editor columns share the width; the captions keep theirs.
    grid->setColumnStretch(2, 1);
    grid->setColumnStretch(4, 1);

    auto *box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(box, &QDialogButtonBox::accepted, this, &XMLPropertiesDialog::accept);
    connect(box, &QDialogButtonBox::rejected, this, &XMLPropertiesDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(box);
}

QCheckBox *XMLPropertiesDialog::addRow(QGridLayout *grid, const QString &title, const QString &name, bool on)
{
    auto *check = new QCheckBox(title, this);
    check->setObjectName(name + QStringLiteral("Row"));
    check->setChecked(on);
    grid->addWidget(check, grid->rowCount(), 0);
    return check;
}

QLineEdit *XMLPropertiesDialog::addEditor(QGridLayout *grid, QCheckBox *row, int column, const QString &label,
                                          const QString &name, const QString &text)
{
    // The row's check box sits in the last line of the grid.
    const int line = grid->rowCount() - 1;
    auto *caption = new QLabel(label, this);
    auto *edit = new QLineEdit(text, this);
    edit->setObjectName(name);
    edit->setMinimumWidth(140);
    caption->setBuddy(edit);
    caption->setEnabled(row->isChecked());
    edit->setEnabled(row->isChecked());
    connect(row, &QCheckBox::toggled, caption, &QWidget::setEnabled);
    connect(row, &QCheckBox::toggled, edit, &QWidget::setEnabled);
    grid->addWidget(caption, line, column);
    grid->addWidget(edit, line, column + 1);
    return edit;
}

QCheckBox *XMLPropertiesDialog::rowCheck(const QString &name) const
{
    return findChild<QCheckBox *>(name + QStringLiteral("Row"));
}

QLineEdit *XMLPropertiesDialog::editor(const QString &name) const
{
    return findChild<QLineEdit *>(name);
}

void XMLPropertiesDialog::accept()
{
    auto on = [this](const char *row) { return rowCheck(QLatin1String(row))->isChecked(); };
    auto text = [this](const char *name) { return editor(QLatin1String(name))->text().trimmed(); };

    m_state.versionLabel = on("version") ? text("version") : QString();
    m_state.fwVersionMin = on("fw") ? text("fwMin") : QString();
    m_state.fwVersionMax = on("fw") ? text("fwMax") : QString();
    m_state.svdName = on("svd") ? text("svd") : QString();
    m_state.migrationFile = on("migration") ? text("migration") : QString();
    m_state.disclaimerSet = on("disclaimer") && !text("disclaimer").isEmpty();
    m_state.disclaimerName = m_state.disclaimerSet ? text("disclaimer") : QStringLiteral("disclaimer.txt");
    m_state.ioPort = on("io") ? text("ioPort") : QString();
    m_state.ioSettings = on("io") ? text("ioSettings") : QString();
    m_state.loadSaveAllowedSet = on("loadSave");
    m_state.loadSaveAllowed = on("loadSave") ? m_loadSave->isChecked() : true;
    m_state.forumUrl = on("forum") ? text("forumUrl") : QString();
    QDialog::accept();
}

#include "views/UnresolvedDialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QTextBrowser>
#include <QTextEdit>
#include <QUrl>

UnresolvedDialog::UnresolvedDialog(QWidget *parent)
    : QDialog(parent)
    , m_left(new QTextEdit(this))
{
    setWindowTitle(QStringLiteral("Load old QLNP: Missing Registers:"));
    auto *right = new QTextBrowser(this);
    right->setOpenLinks(false);
    m_right = right;
    m_left->setReadOnly(true);
    m_left->setLineWrapMode(QTextEdit::NoWrap);
    connect(right, &QTextBrowser::anchorClicked, this, [this](const QUrl &link) {
        QString define = link.toString();
        emit elementRequested(define.replace(QStringLiteral("$$$COLON$$$"), QStringLiteral(":")));
    });

    auto *layout = new QGridLayout(this);
    layout->addWidget(new QLabel(tr("Found in QLNP but not in XML (potential loss of data):"), this), 0, 0);
    layout->addWidget(new QLabel(tr("Found in XML but not in QLNP (not critical):"), this), 0, 1);
    layout->addWidget(m_left, 1, 0);
    layout->addWidget(m_right, 1, 1);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::hide);
    layout->addWidget(buttons, 2, 0, 1, 2);
    resize(900, 420);
}

void UnresolvedDialog::setLists(const QString &left, const QString &right)
{
    m_left->setPlainText(left);
    m_right->setHtml(right);
}

QString UnresolvedDialog::leftText() const
{
    return m_left->toPlainText();
}

QString UnresolvedDialog::rightText() const
{
    return m_right->toPlainText();
}

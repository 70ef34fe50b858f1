#pragma once
#include <QObject>
#include <QPointer>
#include <QSet>

class QWidget;

// The confirmation filter: a mouse press on a widget whose element has a
// `confirmation` text first asks the user. Cancel drops the press; any
// other answer posts the press and a matching release to the widget again,
// and those pass. The question goes through Dialogs, so an unattended run
// never blocks on it (it takes the Ok answer).
class QInputEventRecorder : public QObject
{
    Q_OBJECT
public:
    explicit QInputEventRecorder(QObject *parent = nullptr);

    // Installs one filter per widget (a second call does nothing).
    static void install(QWidget *widget);

    // The confirmation text for a widget: its own `confirmation`, or that of
    // its button group's element for a radio button.
    static QString confirmationText(QWidget *widget);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // The presses and releases posted anew after a confirmation.
    QSet<QEvent *> m_reposted;
};

#pragma once
#include <QPushButton>
#include <QSize>

// A button that runs the description's actions when it is pressed, released
// or clicked; each action leaves as the signal "<event>_<command>" with its
// data text, wired by the reader to the main window's command slots.
class PushButton : public QPushButton
{
    Q_OBJECT
public:
    explicit PushButton(QWidget *parent = nullptr);

    // The look of a button without an icon.
    static QString plainStyle();

    // Shows the picture in the file as the button's icon and makes the
    // button flat. A valid `size` scales the picture to it; otherwise the
    // button takes the picture's size. With `noGrayOut` the picture also
    // stands for the disabled state. False, and the former look, when the
    // file can't be read; the caller words the report.
    bool setIconFile(const QString &path, const QSize &size = QSize(), bool noGrayOut = false);
    // The same for a picture set at run time (the `image` selector): the
    // size and the `nograyout` setting of the description are kept, and a
    // failure reports "Picture of <button> element couldn't be loaded.".
    Q_INVOKABLE bool setPicture(const QString &path);

public slots:
    // Runs the entries of the event that called it (clicked, pressed or
    // released) in order, for those whose condition holds.
    void sendDataWhenClicked();

signals:
    void clicked_loadFile(const QString &text);
    void clicked_sendUSB(const QString &text);
    void clicked_recData(const QString &text);
    void clicked_setDef(const QString &text);
    void clicked_startProgram(const QString &text);
    void clicked_runScript(const QString &text);
    void clicked_resetGUI(const QString &text);
    void pressed_setDef(const QString &text);
    void pressed_sendUSB(const QString &text);
    void pressed_recData(const QString &text);
    void released_setDef(const QString &text);
    void released_sendUSB(const QString &text);
    void released_recData(const QString &text);

private:
    QString eventOfSender() const;
};

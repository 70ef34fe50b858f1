#pragma once
#include <QLabel>
#include <QTimer>

#include "elements/ActiveElement.h"

// A counter driven by a timer: it counts its ticks, shows the count, and
// runs its `changed` actions at every tick, so a description can poll the
// board or step through values. It runs only while a document is open;
// `.interval` and `.run` change it from actions and scripts.
class TimerLabel : public QLabel, public ActiveElement
{
    Q_OBJECT
    Q_PROPERTY(int run READ run WRITE setRun)
    Q_PROPERTY(int singleShot READ singleShot WRITE setSingleShot)
    Q_PROPERTY(int interval READ interval WRITE setInterval)

public:
    explicit TimerLabel(QWidget *parent = nullptr);

    int run() const { return m_run; }
    // Whether the timer starts with the document (and after a reset).
    void setRun(int run) { m_run = run; }
    int singleShot() const { return m_timer.isSingleShot() ? 1 : 0; }
    void setSingleShot(int singleShot) { m_timer.setSingleShot(singleShot != 0); }
    int interval() const { return m_timer.interval(); }
    void setInterval(int milliseconds) { m_timer.setInterval(qMax(0, milliseconds)); }

    qint64 counter() const { return m_counter; }
    bool isActive() const { return m_timer.isActive(); }
    QTimer *timer() { return &m_timer; }

    // ActiveElement. Kinds: 0 the count, 4 "TimerLabel", 5 the interval,
    // 6 whether it runs; setValue(5) changes the interval, setValue(6)
    // starts (not 0) or stops it.
    bool setValue(const QString &text, int kind) override;
    bool loadValue(const QString &text) override;
    QString value(int kind, bool flag = false) override;
    QString referenceValue() override;
    // Wires the tick and starts the timer when `run` is set.
    void connectSignals() override;
    // Stops the timer and sets the count back to 0; connectSignals starts
    // it anew.
    void applyDefault() override;
    void emitLocks() override {}
    void setElementEnabled(bool enabled) override;
    bool setBits(int msb, int lsb) override;
    QWidget *widget() override { return this; }
    QString typeInfo() const override { return QStringLiteral("TimerLabel"); }

public slots:
    void IncrementCounter();
    void start();
    void stop();

signals:
    void changedByUser();
    void updateMathLabels();
    void changed_setDef(const QString &text);
    void changed_sendUSB(const QString &text);
    void changed_recData(const QString &text);
    void changed_loadFile(const QString &text);
    void changed_startProgram(const QString &text);
    void changed_runScript(const QString &text);

private:
    void showCounter();

    QTimer m_timer;
    qint64 m_counter = 0;
    int m_run = 0;
};

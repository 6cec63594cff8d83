#pragma once

#include "support/childprocess.h"

#include <QImage>
#include <QJsonObject>
#include <QLocalSocket>
#include <QRect>

/** A virtual X display of its own, ended with the object. */
class VirtualDisplay
{
public:
    /** @param oSize of the only screen, in pixels; name() is ":" if the display does not come up */
    explicit VirtualDisplay(const QSize& oSize);
    /** Returns the value for DISPLAY. */
    QString name() const { return m_strName; }
    /** Runs xdotool with the words of the command and waits for it: real events, as from a touch screen. */
    bool pointer(const QString& strCommand) const;
    /** Presses and releases at a point. */
    bool tap(const QPoint& oPoint) const;

private:
    ChildProcess m_oServer;
    QString m_strName;
};

/** One widget of the running panel, as its probe reports it. */
struct sWidget : QJsonObject
{
    QString name() const { return value("name").toString(); }
    /** Returns what a label, button or field shows; of a combo box the current item. */
    QString text() const { return value(contains("text") ? "text" : "currentText").toString(); }
    bool isVisibleLabel() const { return value("class") == "QLabel" && value("visible").toBool(); }
    /** Returns a member that holds a rectangle: "rect" in screen pixels, "minimum" the smallest size. */
    QRect rect(const QString& strMember = "rect") const;
};

/** The real program as a child process, with the test in the place of the runtime. Killed with the object. */
class PanelProcess
{
public:
    /**
     * @param strDisplay value for DISPLAY; empty runs the program on the offscreen platform
     * @param strCommand the shell command that becomes the program
     */
    explicit PanelProcess(const QString& strDisplay = QString(),
                          const QString& strCommand = "exec " PANEL_PROGRAM);
    /** The child. */
    ChildProcess& process() { return m_oProcess; }
    /** Starts the program and waits for its greeting; returns false if none comes. */
    bool start();
    /** Sends bytes as they are. */
    void send(const QByteArray& oBytes);
    /** Sends "quit" and waits for the end; returns the exit status, -1 if it did not end by itself. */
    int quit();
    /** Returns all that the program has written to standard output until now. */
    QByteArray output();
    /** Returns all that the program has written to its log until now. */
    QByteArray log() const;
    /** Waits up to 10 s for the log to hold the text. */
    bool waitForLog(const QByteArray& oText) const;
    /** Returns the program's widgets; the answer comes from its event loop. Empty if it does not answer. */
    QList<sWidget> widgets();
    /** Returns the named widget; a nameless one if there is none. */
    sWidget widget(const QString& strName);
    /** Waits up to 10 s for the named widget to be on screen, or to be gone; returns whether it is so. */
    bool waitForVisible(const QString& strName, bool bVisible = true);
    /** Returns what the named widget paints, transparent where it paints nothing; null if there is none. */
    QImage picture(const QString& strName);
    /** Returns the texts of the visible labels that have no name: extra applications, interfaces. */
    QStringList namelessTexts();
    /** Waits until the panel's clock has ticked twice, which takes 1 to 2 s; returns false if it stands
     * still. */
    bool waitForTicks();
    /** Waits up to 10 s for the named label or field to show the text; returns what it shows at last. */
    QString waitForText(const QString& strName, const QString& strText);

private:
    QByteArray ask(const QByteArray& oLine);

    ChildProcess m_oProcess;
    QLocalSocket m_oProbe;
    QString m_strSocket;
    QByteArray m_oOutput;
};

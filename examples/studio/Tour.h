#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QTemporaryDir>
#include <QTextStream>

#include <functional>
#include <memory>

class MainWindow;
class QWidget;

/**
 * Leads a window through its main states on a sample environment and writes a picture of each. Everything
 * happens as the user would do it, and every step waits for what the one before it has led to.
 */
class Tour : public QObject
{
    Q_OBJECT

public:
    explicit Tour(const QString &folder, QObject *parent = nullptr);
    ~Tour() override;

    /** Begins; the application quits at the end, with 1 when a step was waited for in vain. */
    bool start();
    QString lastErrorMessage() const;

private slots:
    void goOn();

private:
    struct Step
    {
        QString text;
        std::function<bool()> isReady;
        std::function<void()> act;
    };

    void planStart();
    void planStage();
    void planMedia();
    void planDestinations();
    void planConversion();
    void plan(const QString &text, const std::function<bool()> &isReady, const std::function<void()> &act);
    QString mediaPath(const QString &name) const;
    void picture(const QString &name, const QString &text, QWidget *widget);
    void quit(int code);

    template<typename Widget>
    Widget *find(const char *name) const;

    QString m_folder;
    QString m_lastErrorMessage;
    QTemporaryDir m_environment;
    std::unique_ptr<MainWindow> m_window;
    QList<Step> m_steps;
    QElapsedTimer m_waiting;
    QTextStream m_out{stdout};
};

#pragma once

#include <QFrame>

class QLabel;
class QToolButton;

/**
 * A line inside a panel that says what went wrong there, or what went well, until it is closed. It may offer
 * one command.
 */
class MessageBar : public QFrame
{
    Q_OBJECT

public:
    explicit MessageBar(QWidget *parent = nullptr);

    QString text() const;
    /** A command beside the text, until the next message. */
    void offer(const QString &command);

public slots:
    void showError(const QString &text);
    void showWarning(const QString &text);
    void showSuccess(const QString &text);
    void clear();

signals:
    void commandChosen();

private:
    void showMessage(const QString &text, const QString &colors);

    QLabel *m_text = nullptr;
    QToolButton *m_command = nullptr;
};
